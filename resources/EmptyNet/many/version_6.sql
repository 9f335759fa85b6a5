insert into DbVersion values (6, '6', '同一路网文件或数据库可以保存多个路网', '', '20230202');
