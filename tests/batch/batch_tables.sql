-- Code lists of the Make All tests, beside the sample rows: a code with no
-- rows between two that have them, a short history, and pair rows with and
-- without their "/".
CREATE TABLE batch_one (code VARCHAR(20));
INSERT INTO batch_one VALUES ('ACME'), ('NOSUCH'), ('INITECH');
CREATE TABLE batch_two (code VARCHAR(20));
INSERT INTO batch_two VALUES ('SHORT');
CREATE TABLE batch_pairs (code VARCHAR(40));
INSERT INTO batch_pairs VALUES ('ACME/GLOBEX'), ('NOSLASH');
