-- The batch benchmark's database: ten six-column instruments of 600 to
-- 2,000 rows (the four of the sample with volume, and six copies of them
-- under codes of their own), so that each gets all eighteen images, and an
-- empty list for the second table and the pairs.
INSERT INTO prices SELECT 'ACME2', tradedate, close, open, high, low, volume FROM prices WHERE code = 'ACME';
INSERT INTO prices SELECT 'ACME3', tradedate, close, open, high, low, volume FROM prices WHERE code = 'ACME';
INSERT INTO prices SELECT 'GLOBEX2', tradedate, close, open, high, low, volume FROM prices WHERE code = 'GLOBEX';
INSERT INTO prices SELECT 'GLOBEX3', tradedate, close, open, high, low, volume FROM prices WHERE code = 'GLOBEX';
INSERT INTO prices SELECT 'INITECH2', tradedate, close, open, high, low, volume FROM prices WHERE code = 'INITECH';
INSERT INTO prices SELECT 'LONGRUN2', tradedate, close, open, high, low, volume FROM prices WHERE code = 'LONGRUN';
CREATE TABLE bench_codes (code VARCHAR(20));
INSERT INTO bench_codes VALUES ('ACME'), ('GLOBEX'), ('INITECH'), ('LONGRUN'), ('ACME2'),
  ('ACME3'), ('GLOBEX2'), ('GLOBEX3'), ('INITECH2'), ('LONGRUN2');
CREATE TABLE bench_none (code VARCHAR(40));
