-- What the form must have shown in ledger-filter.keys, whose filter has let these bookings through; they are unchanged.
select printf('debit %.15g, credit %.15g', sum(round(debit * 100)) / 100, sum(round(credit * 100)) / 100) from bookings
  where day like '2020-02-%' and account in ('6100 Rent', '6300 Telephone');
-- The order of the columns and the sorting are kept, and the filter is not, since it had been reset.
select layout from layouts where layout not like '1|No=720|Booking=960|Date=1500|Checked=960|%' or layout not like '%|*sort=;Debit-1;'
  or layout like '%filter=%';
select 'no layout' where not exists (select * from layouts);
