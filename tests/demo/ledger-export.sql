-- What the form must have shown in ledger-export.keys, and what is wrong in the files that it has written.
create temp view shown as select * from bookings where day >= '2024-12-27';
select printf('debit %.15g, credit %.15g', sum(round(debit * 100)) / 100, sum(round(credit * 100)) / 100) from shown;
.import --csv build/test/ledger-export.csv exported
select 'not in the file: ' || line from (select cast(id as text) as line, day, account, text, debit, credit, checked from shown
  except select Booking, Date, Account, Text, Debit, Credit, Checked from exported);
select 'wrong number of lines' where (select count(*) from exported) <> (select count(*) from shown);
create temp table sheet as select cast(data as text) as xml from zipfile('build/test/ledger-export.xlsx') where name like '%sheet1.xml';
select 'not in the workbook: ' || text from shown, sheet where not instr(xml, '>' || text || '</t>');
select 'wrong number of rows' from sheet where (length(xml) - length(replace(xml, '<row ', ''))) / 5 <> (select count(*) + 1 from shown);
-- The signature of a metafile is at its 40th byte.
select 'page ' || n || ' is missing or too much' from (select 1 as n union select 2 union select 3)
  where (coalesce(substr(readfile('build/test/ledger-export-' || n || '.emf'), 41, 4), '') = x'20454D46') <> (n < 3);
