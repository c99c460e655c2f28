-- The database of backup.frm: a shop's sales, and the users who may restore it (user 1 is the administrator).
create table sales (
  id integer primary key,
  day date not null,
  article text not null,
  amount currency not null
);
create table users (
  UCode integer primary key,
  Name text not null,
  Password text
);
insert into users values (1, 'Administrator', 'Sesame'), (2, 'Clerk', 'till');
insert into sales values
  (1, '2026-02-26', 'Writing desk', 480),
  (2, '2026-02-26', 'Desk lamp', 64.5),
  (3, '2026-02-27', 'Paper, 500 sheets', 7.95),
  (4, '2026-02-28', 'Office chair', 219),
  (5, '2026-02-28', 'Ink, blue', 4.2);
