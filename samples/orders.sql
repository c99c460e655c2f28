-- The database of orders.frm: the orders of a stationer's shop and their lines.
create table articles (
  name text primary key,
  price currency not null
);
create table orders (
  id integer primary key,
  customer text not null,
  ordered date not null,
  remark text
);
create table lines (
  order_id integer not null references orders(id),
  position integer not null,
  article text not null references articles(name),
  quantity integer not null check (quantity between 1 and 9999),
  price currency not null check (price >= 0),
  primary key (order_id, position)
);

insert into articles values
  ('Binder A4', 3.2),
  ('Binder A5', 2.85),
  ('Copy paper', 5.49),
  ('Desk lamp', 38.9),
  ('Paper clips', 0.95),
  ('Shipping', 6.9);

insert into orders values
  (1, 'Miller & Sons', '2024-03-01', null),
  (2, 'Café Grün', '2024-03-04', 'Delivery on Tuesdays only'),
  (3, 'O''Brien', '2024-03-07', null),
  (4, 'Øresund Møbler', '2024-03-11', 'Invoice in €');

insert into lines values
  (1, 1, 'Binder A4', 10, 3.2),
  (1, 2, 'Copy paper', 4, 5.49),
  (1, 3, 'Shipping', 1, 6.9),
  (2, 1, 'Desk lamp', 2, 38.9),
  (2, 2, 'Paper clips', 12, 0.95),
  (3, 1, 'Binder A5', 5, 2.85),
  (4, 1, 'Copy paper', 40, 4.99),
  (4, 2, 'Shipping', 2, 6.9);
