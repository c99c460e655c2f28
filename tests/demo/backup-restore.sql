-- What the form must have shown three times: at first, after everything was lost and restored, and after a copy was put beside it.
select strftime('%Y-%m-%d', day) || '|' || article || '|' || amount from sales order by id;
select strftime('%Y-%m-%d', day) || '|' || article || '|' || amount from sales order by id;
select strftime('%Y-%m-%d', day) || '|' || article || '|' || amount from sales order by id;
