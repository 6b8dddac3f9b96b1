-- Tables of bad input for the database driver tests, in SQL that SQLite and
-- PostgreSQL both run; loaded beside the sample rows.
CREATE TABLE text_dates (tradedate VARCHAR(20), close DOUBLE PRECISION);
INSERT INTO text_dates VALUES ('2009-01-05', 1.5);
CREATE TABLE integer_prices (tradedate DATE, close INTEGER);
INSERT INTO integer_prices VALUES ('2009-01-05', 2);
CREATE TABLE odd_dates (code VARCHAR(20), tradedate DATE, close DOUBLE PRECISION);
INSERT INTO odd_dates VALUES
 ('DUP', '2009-01-05', 1), ('DUP', '2009-01-06', 2), ('DUP', '2009-01-06', 3),
 ('DUP', '2009-01-07', 4),
 ('FUTURE', '2009-01-05', 1), ('FUTURE', '2009-01-06', 2), ('FUTURE', '2099-01-05', 3),
 ('NULLDATE', '2009-01-05', 1), ('NULLDATE', NULL, 2), ('NULLDATE', '2009-01-07', 3);
