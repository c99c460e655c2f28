-- The database of ledger.frm: ten years of a small firm's journal, 100,000 bookings that are the same in every run.
--
-- Amounts are texts with two decimals, as the grid shows them: SQLite has no exact decimal numbers. A booking has either
-- a debit or a credit.
create table accounts (
  name text primary key
);
create table bookings (
  id integer primary key,
  day text not null check (day = date(day)),
  account text not null references accounts(name),
  text text not null default '',
  debit text not null default '' check (debit in ('', printf('%.2f', debit))),
  credit text not null default '' check (credit in ('', printf('%.2f', credit))),
  checked text not null default 'no' check (checked in ('yes', 'no')),
  check ((debit = '') <> (credit = ''))
);
-- What a user has arranged.
create table layouts (
  grid text primary key,
  layout text not null
);

insert into accounts values
  ('1000 Bank'), ('1200 Receivables'), ('4000 Sales'), ('5000 Goods'), ('6000 Wages'), ('6100 Rent'),
  ('6200 Electricity'), ('6300 Telephone'), ('6400 Postage'), ('6500 Travel'), ('6600 Office supplies'),
  ('6700 Insurance');

-- The kinds of bookings: in a hundred of them, as many as `share` says, with amounts in cents.
create temp table kinds (first integer, share integer, account text, text text, side text, least integer, spread integer);
insert into kinds values
  (0, 30, '4000 Sales', 'Invoice', 'credit', 1900, 250000),
  (30, 18, '1000 Bank', 'Payment of invoice', 'debit', 1900, 250000),
  (48, 16, '5000 Goods', 'Delivery', 'debit', 4500, 120000),
  (64, 9, '6400 Postage', 'Parcels of the day', 'debit', 350, 6500),
  (73, 7, '6500 Travel', 'Train ticket', 'debit', 1290, 18000),
  (80, 6, '6600 Office supplies', 'Paper and toner', 'debit', 549, 9000),
  (86, 5, '1200 Receivables', 'Reminder fee', 'debit', 500, 2500),
  (91, 3, '6000 Wages', 'Wages, part-time', 'debit', 52000, 90000),
  (94, 2, '6300 Telephone', 'Mobile contract', 'debit', 1999, 3000),
  (96, 2, '6200 Electricity', 'Electricity, workshop', 'debit', 8000, 24000),
  (98, 1, '6100 Rent', 'Rent of the workshop', 'debit', 128000, 1),
  (99, 1, '6700 Insurance', 'Insurance of goods', 'debit', 23500, 4000);

with recursive numbers(i) as (
  select 1 union all select i + 1 from numbers where i < 100000
)
insert into bookings
select i, date('2015-01-01', ((i - 1) * 3652 / 100000) || ' days'), account, text || ' ' || i,
  iif(side = 'debit', amount, ''), iif(side = 'credit', amount, ''), iif(i <= 99000, 'yes', 'no')
from (
  select i, account, text, side, printf('%.2f', (least + i * 7919 % spread) / 100.0) as amount
  from numbers join kinds on i * 37 % 100 between first and first + share - 1
);
