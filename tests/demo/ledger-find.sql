-- What the database must hold after ledger-find.keys: the replacement reached all bookings that have the text, and no others.
select id || '|' || day || '|' || account || '|' || text || '|' || debit || '|' || credit || '|' || checked from bookings
  where text = 'Ink' or text = 'Paper and toner 9913x' or text like 'Contract no. 7%' order by id;
select printf('debit %.15g, credit %.15g', sum(round(debit * 100)) / 100, sum(round(credit * 100)) / 100) from bookings where text like 'Mobile%' or text like 'Contract%';
select text from bookings where text like 'Mobile contract 7%' or (text like 'Contract no. 7%' and account <> '6300 Telephone');
select 'there are ' || count(*) from bookings where account = '6300 Telephone' having count(*) <> 2000;
