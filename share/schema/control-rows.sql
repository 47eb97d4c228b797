-- The rows of the control tables: which tables can be copied, in which groups, under which captions.
-- The group id is the generation of the ERP's components. Plain SQL for every database.
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('110', 1, 'SITE', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('102', 2, 'PRODUCT', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('330', 3, 'PROBLEM', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('070', 4, 'PRIORITY', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('101', 5, 'SYMPTOM', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('200', 6, 'OBJECT', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('310', 7, 'SITECONTRACT', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('300', 8, 'CONTRACTS', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('020', 9, 'WARRANTIES', '4010', 0, 1);
INSERT INTO tstables (ERPTableID, tableid, tablename, productid, in_use, reqd) VALUES ('201', 10, 'SERIALIZEDITEM', '4010', 0, 1);

INSERT INTO tsi18ntext (label, text) VALUES ('TABLE01', 'Sites');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE02', 'Products');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE03', 'Problems');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE04', 'Priorities');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE05', 'Symptoms');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE06', 'Objects');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE07', 'Site contracts');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE08', 'Contracts');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE09', 'Warranties');
INSERT INTO tsi18ntext (label, text) VALUES ('TABLE10', 'Serialized items');

-- A node without a table is the group's own caption.
INSERT INTO tsi18ntext (label, text) VALUES ('GROUP', 'Service master data');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', NULL, 'GROUP');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', 1, 'TABLE01');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', 2, 'TABLE02');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', 3, 'TABLE03');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', 4, 'TABLE04');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', 5, 'TABLE05');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', 8, 'TABLE08');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('1', 9, 'TABLE09');

INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', NULL, 'GROUP');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', 1, 'TABLE01');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', 3, 'TABLE03');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', 4, 'TABLE04');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', 6, 'TABLE06');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', 7, 'TABLE07');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', 8, 'TABLE08');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('3', 9, 'TABLE09');

INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', NULL, 'GROUP');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', 1, 'TABLE01');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', 3, 'TABLE03');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', 4, 'TABLE04');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', 7, 'TABLE07');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', 8, 'TABLE08');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', 9, 'TABLE09');
INSERT INTO tstreenodes (groupid, tableid, label) VALUES ('8', 10, 'TABLE10');
