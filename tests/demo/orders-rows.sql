-- What the database must hold after orders-rows.keys. The script has logged it as shown twice, once for each time it saved.
create temp view shown as select case id when 5 then 1.5 else id end as place,
  id || '|' || customer || '|' || ordered || '|' || coalesce(remark, '') as line from orders;
select line from shown order by place;
select order_id || '|' || position || '|' || article || '|' || quantity || '|' || price from lines where order_id = 5;
select line from shown order by place;
-- Order 2 has no lines any more; nothing else was touched.
select 'order ' || order_id || ' has ' || count(*) || ' lines' from lines group by order_id
  having count(*) <> case order_id when 1 then 3 when 3 then 1 when 4 then 2 when 5 then 1 else 0 end;
