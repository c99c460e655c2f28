-- What the form must have shown twice: at first, and after everything was lost and restored.
select strftime('%Y-%m-%d', day) || '|' || article || '|' || amount from sales order by id;
select strftime('%Y-%m-%d', day) || '|' || article || '|' || amount from sales order by id;
