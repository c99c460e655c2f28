-- What the database must hold after orders-save.keys, in the form in which the script logs what it shows.
select id || '|' || customer || '|' || ordered || '|' || coalesce(remark, '') from orders order by id;
select order_id || '|' || position || '|' || article || '|' || quantity || '|' || price from lines where order_id = 2 order by position;
-- Nothing else was touched, and nothing is left of the order that was deleted.
select 'order ' || order_id || ' has ' || count(*) || ' lines' from lines where order_id not in (1, 2, 3) group by order_id;
select 'order ' || id || ' has lost lines' from orders where id <> 2
  and (select count(*) from lines where order_id = id) <> (case id when 1 then 3 when 3 then 1 end);
