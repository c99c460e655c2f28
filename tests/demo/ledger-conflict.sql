-- What the database must hold after ledger-conflict.keys: the user's version of all fields.
select id || '|' || day || '|' || account || '|' || text || '|' || debit || '|' || credit || '|' || checked from bookings where id in (1, 5);
select printf('debit %.15g, credit %.15g', sum(round(debit * 100)) / 100, sum(round(credit * 100)) / 100) from bookings;
select 'booking 2 is still there' from bookings where id = 2;
