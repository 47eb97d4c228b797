#include "startup/program_help.h"

namespace zenqay {

std::optional<Text> AnswerToQuestion(const Text& commandLine, const Text& program, const Text& help) {
  if (commandLine == "--version") return program + " " + ZENQAY_VERSION + "\n";
  if (commandLine == "--help") return help;
  return {};
}

Text ProgramVersion() {
  return ZENQAY_VERSION;
}

const char* ItemsHelp() {
  return R"(The items are separated by "{}" and not quoted; several arguments are joined
with single blanks. With "-" as the only argument the line is read from standard
input, to its end; so the password in it stands in no process list.

   1  connection string of the local database
   2  database (SQL Server) or schema (Oracle); may be blank
   3  table id, 0 to 127; 128 for all tables of the generation's group
   4  1 full copy, 2 only what changed
   5  directory of the log files, without a separator at its end
   6  name of the business component, for which each component of the ERP is
      initialised
   7  status handle: a number; below 0 the status by table is switched off
   8  free text for the tables 98 and 99, else blank
   9  1 SQL Server, 2 Oracle: the form of the statements
  10  instance number of the status component
  11  generation of the ERP's components: 1, 3 or 8
  12  if there is a twelfth item and none behind it, no status component is used
)";
}

Text JobHelp() {
  return Text(R"(zenqay-dbsync - copy service master data from an ERP into a local database

USAGE
  zenqay-dbsync ITEM{}ITEM{}...
  zenqay-dbsync - < FILE
  zenqay-dbsync --help | --version

One process runs one job: it copies one table, or all tables of a generation's
group, in full or only what changed since the last copy, keeps the state of each
table in the database, tells the status component how it is doing, and ends.

ITEMS
)") + ItemsHelp() +
         R"(
ENVIRONMENT
  ZENQAY_HOME  the directory of I18nText.xml and Components.xml; without it, the
               program's own
  JAVA_HOME    the Java runtime for components of Java, where Components.xml has
               some; without it, that of the java command, or one that is
               installed below /usr/lib/jvm
  TZ           the local time zone, as for every program
  ZENQAY_SWEEP_LIMIT  the limit of the sweep for this run, as in Components.xml
  ZENQAY_CONTROL_FD   a descriptor on which the job tells its starter, in JSON
               lines, what becomes of it

SIGNALS
  SIGTERM, SIGINT, SIGHUP  break the copy of a table off, free it, and begin no
               further one; five seconds later, they end the process at once

FILES
  I18nText.xml            all texts
  Components.xml          who serves which component, and whether the run leaves
                          a trace
  <table>_<YYYYMMDD>.log  in the log directory: the copies of a table on a day,
                          with their counts or their failures
  ZenqayDBSync.log        there: what failed before or outside a table's copy
  ZNQevtLG.txt            there: the causes of failures that no log shows

EXIT STATUS
   0  the job ended, also when a table's copy failed: the status component and
      the logs say so
  70  a failure could not be recorded; standard error names it

EXAMPLE
  zenqay-dbsync "Provider=SQLite;Data Source=/srv/service.db{}SERVICE{}128{}1{}/var/log/zenqay{}MAIN{}-1{}{}1{}0{}3"

zenqay-dbsync-check takes the same command line and says beforehand whether a
job could run.
)";
}

}  // namespace zenqay
