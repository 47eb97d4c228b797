#include "control/anonymise/word_lists.h"

namespace zenqay {

std::string_view StatementWords() {
  return R"(select count counted as from where and or not null is like inner join on update set insert into values
    delete statistics dateformat ymd alter session current_schema convert datetime to_date d n
    create table view index unique primary key default check constraint references foreign collate nocase binary rtrim
    without rowid strict length typeof in between asc desc group match sqlite autoindex
    glob coalesce takes characters dates numbers
    integer int smallint bigint tinyint real float double precision numeric decimal number bit boolean money
    char character varchar varchar2 nchar nvarchar nvarchar2 varying text ntext clob nclob blob date time timestamp
    smalldatetime datetime2 datetimeoffset)";
}

std::string_view MessageWords() {
  return R"(a about access active address admin administrator again aggregate all allowed already ambiguous an and
    another any are argument arguments array as assigned at attempt authentication authorization available bad batch be
    because been before beginning behind being below block both bound broken buffer busy but by call called can cannot
    cast cause changed char character characters check class clause client close closed cluster code collation column
    columns command commit common communication compare component concurrent condition configuration conflict
    conflicted connect connected connecting connection constraint contact contains conversion convert converting could
    count create created current cursor data database datatype date datetime dbname deadlock deadlocked default define
    defined delete deleted denied depth description detail device did directory disabled disconnected disk division
    does domain driver drop dropped due duplicate during each element else empty encoding encountered end ended engine
    enough enter error errors exceeded exceeds exception exclusive execute executed execution exist existing exists
    expected expecting explicit expression external failed failing failure fatal few field fields file files first for
    foreign form format found free from full function generation get given granted group handle handler has have header
    held hint host if illegal in incorrect index initialization input insert instance insufficient int integer internal
    interrupt interrupted into invalid io is isolation it item its job join key keys kind language large last left
    length level library limit line link list listener local locale location lock locked log logged login long longer
    lookup lost made malformed many match maximum may memory message method minimum missing mode modified more most must
    name named names native near network new next no node non none not nothing null number numeric object of offset on
    one only open opened operand operation operator optional or oracle order out output over overflow page parameter
    parent parse parser password path permission please point pool port position postgres postgresql prepare prepared
    primary privileges procedure process protocol provider query range read readonly reason received record
    recordset reference referenced refused related relation remote removed request requested required reset resource
    response restart result retry returned role rollback root row rows run running same schema second see segment select
    sequence server service session set shared should size small socket some space specified sql start started state
    statement statements status stop stopped storage stored string subquery such support supported suspended syntax
    system table tables tablespace temporary terminated terminating text than that the then there this time timed
    timeout timestamp to token too transaction translate trigger truncated try trying type types unable unavailable
    undefined unexpected unique unknown unrecognized unsupported until up update updated use used user username using
    utf value values variable varchar varchar2 version victim view violated violates violating violation wait waiting
    was were what when where which while will with within without write written wrong zero
    actual bytes byte counted marked would rows sweep place records ends
    isn doesn couldn wasn aren hasn haven didn won s t am pm
    com dll org net net10 odbc unixodbc freetds tds tdsodbc psqlodbc psqlodbcw sqlite sqlite3 postgresql microsoft ole
    db sqloledb msoledbsql sqlncli oraoledb msdaora native client manager ora sqlstate java lang io sql nio
    nullpointerexception runtimeexception illegalargumentexception illegalstateexception sqlexception ioexception
    numberformatexception exception caused
    08001 08s01 08003 08006 22001 22003 22007 22018 23000 23505 23502 28000 28p01 37000 40001 42000 42501 42601 42703
    42s02 42s22 42p01 57014 hy000 hyt00 im002
    service master data csv xml jsonl log var lib srv opt etc home tmp usr zenqaydbsync znqevtlg zenqay zenqa dbsync i18ntext components
    nextElement hasMoreElements kxiToolKit getDefaultToolkit createUserSession addManager Close get getDate getHours
    getInstance getMinutes getMonth getSeconds getTimeZoneOffset getYear getContracts getServiceContracts
    getContractConfigurationLines hasContracts hasServiceContracts hasContractConfigurationLines setDate setFrom setHours
    setMinutes setmonth setNetListIn setNetListOut setNetListPeriod setSeconds setTime setTo SetYear addNetListParameter
    ZONE OFFSET CurrentInstanceNumber NetListClusters NetListConfigurations NetListContractConfigurationLines
    NetListContracts NetListInstallations NetListLocations NetListObjects NetListPriorities NetListProblems
    NetListSerializedItems NetListServiceContracts NetListSymptoms NetListWarranties SiteContracts Only)";
}

}  // namespace zenqay
