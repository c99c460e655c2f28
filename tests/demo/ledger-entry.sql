-- What the database must hold after ledger-entry.keys, in the form in which the script logs what it shows.
create temp view shown as select id || '|' || day || '|' || account || '|' || text || '|' || debit || '|' || credit || '|' || checked as line, *
  from bookings;
select line from shown where id = 2;
select line from shown where id = 3;
select line from shown where account = '6300 Telephone' and text = 'Call';
select line from shown where account = '6400 Postage' and text = 'Stamps';
select printf('debit %.15g, credit %.15g', sum(round(debit * 100)) / 100, sum(round(credit * 100)) / 100) from bookings;
-- One was deleted, and two are new.
select 'there are ' || count(*) || ' bookings' from bookings having count(*) <> 100001;
select line from shown where id = 4;
