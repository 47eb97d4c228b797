#include "check/check_help.h"

#include "startup/program_help.h"

namespace zenqay {

Text CheckHelp() {
  return Text(R"(zenqay-dbsync-check - say whether a job of zenqay-dbsync could run

USAGE
  zenqay-dbsync-check ITEM{}ITEM{}...
  zenqay-dbsync-check - < FILE
  zenqay-dbsync-check --help | --version

Takes the command line of a job, changes nothing, and says in order what works:
the items of the line, the log directory, the texts, the components, the database
from its driver to the registry, then each table that the line asks for. A line
of the report begins with

  ok        it works
  warning   a job runs; the line says what it would do
  MEND      no job, or not this table's copy, gets past it
  left out  not looked at, since what it needs failed

ITEMS
)") + ItemsHelp() +
         R"(
ENVIRONMENT
  ZENQAY_HOME  the directory of I18nText.xml and Components.xml; without it, the
               program's own
  JAVA_HOME    the Java runtime for components of Java, where Components.xml has
               some; without it, that of the java command, or one that is
               installed below /usr/lib/jvm

FILES
  I18nText.xml    all texts
  Components.xml  who serves which component
  No file is written.

EXIT STATUS
  0  nothing is to be mended
  1  something is, or the check itself failed

EXAMPLE
  zenqay-dbsync-check "Provider=SQLite;Data Source=/srv/service.db{}SERVICE{}128{}1{}/var/log/zenqay{}MAIN{}-1{}{}1{}0{}3"
)";
}

}  // namespace zenqay
