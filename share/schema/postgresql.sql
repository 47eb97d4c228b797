-- The reference schema for PostgreSQL: psql -d service -f postgresql.sql
-- Names stay without quotes, so they are the same in every case.

-- Control tables.
CREATE TABLE tstables (
  tablename  varchar(50) NOT NULL PRIMARY KEY,
  ERPTableID varchar(20),
  tableid    INTEGER,
  productid  varchar(10),
  lutm       timestamp,
  in_use     INTEGER,
  reqd       INTEGER
);
CREATE TABLE tsi18ntext (
  label varchar(50) NOT NULL PRIMARY KEY,
  text  varchar(255)
);
CREATE TABLE tstreenodes (
  groupid varchar(10) NOT NULL,
  tableid INTEGER,
  label   varchar(50)
);
CREATE INDEX tstreenodes_group ON tstreenodes (groupid, tableid);

-- Data tables. Keys and indexes follow what the statements match by.
CREATE TABLE SITE (
  SITE        varchar(10) NOT NULL PRIMARY KEY,
  DESCRIPTION varchar(100),
  CUSTOMER    varchar(20),
  upd_flag    INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE PRODUCT (
  PRODUCT        varchar(20) NOT NULL PRIMARY KEY,
  DESCRIPTION    varchar(100),
  SITE           varchar(10),
  CONTRACT       varchar(10),
  EFFECTIVE_DATE DATE,
  EXPIRY_DATE    DATE,
  WARRANTY       varchar(16),
  WEXPIRY_DATE   DATE,
  upd_flag       INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE PROBLEM (
  PROBLEM     varchar(10) NOT NULL PRIMARY KEY,
  DESCRIPTION varchar(100),
  CALLTYPE    varchar(10),
  upd_flag    INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE PRIORITY (
  PRIORITY    INTEGER NOT NULL PRIMARY KEY,
  DESCRIPTION varchar(100),
  upd_flag    INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE SYMPTOM (
  SYMPTOM     varchar(10) NOT NULL PRIMARY KEY,
  DESCRIPTION varchar(100),
  upd_flag    INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE OBJECT (
  SITE              varchar(10) NOT NULL,
  OBJECT            varchar(50) NOT NULL,
  OBJECTNR          INTEGER NOT NULL,
  OBJECTDESC        varchar(100),
  ITEM              varchar(50),
  ITEMDESC          varchar(100),
  SERIALNUMBER      varchar(50),
  WARRANTY          varchar(16),
  INSTALLATION_DATE DATE,
  DELIVERY_DATE     DATE,
  WEXPIRY_DATE      timestamp,
  upd_flag          INTEGER NOT NULL DEFAULT 0,
  PRIMARY KEY (SITE, OBJECT, OBJECTNR)
);
-- A site, an object or a serial number that is not known stands as NULL: no key, but an index.
CREATE TABLE SITECONTRACT (
  SITE           varchar(10),
  CONTRACT       varchar(10),
  OBJECT         varchar(50),
  OBJECTNR       varchar(50),
  TERM           INTEGER,
  LINE           INTEGER,
  EFFECTIVE_DATE DATE,
  EXPIRY_DATE    DATE,
  upd_flag       INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX SITECONTRACT_match ON SITECONTRACT (SITE, CONTRACT, OBJECT, OBJECTNR, TERM, LINE);
-- Under generation 8 a contract that becomes active fills CONTRACTS in place of CONTRACT, so neither is a key.
CREATE TABLE CONTRACTS (
  CONTRACT     varchar(10),
  CONTRACTS    varchar(10),
  CDESCRIPTION varchar(100),
  upd_flag     INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX CONTRACTS_match ON CONTRACTS (CONTRACT);
CREATE TABLE WARRANTIES (
  WARRANTY          varchar(16) NOT NULL PRIMARY KEY,
  WDESCRIPTION      varchar(100),
  NUMBER_OF_PERIODS INTEGER,
  PERIOD_UNIT       INTEGER,
  WARRANTY_TYPE     INTEGER,
  upd_flag          INTEGER NOT NULL DEFAULT 0
);
CREATE TABLE SERIALIZEDITEM (
  OBJECT            varchar(50),
  OBJECTNR          varchar(50),
  OBJECTDESC        varchar(100),
  SITE              varchar(10),
  SERIALNUMBER      varchar(50),
  WARRANTY          varchar(16),
  INSTALLATION_DATE timestamp,
  DELIVERY_DATE     timestamp,
  CUSTOMER          varchar(20),
  upd_flag          INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX SERIALIZEDITEM_match ON SERIALIZEDITEM (SITE, OBJECT, OBJECTNR);
