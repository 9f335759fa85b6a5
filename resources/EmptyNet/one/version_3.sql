insert into DbVersion values (3, '3', '适应专业数据库及国际化要求', '', '20221024');
