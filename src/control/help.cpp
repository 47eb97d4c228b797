// The pages of --help.
#include <utility>

#include "control/command_line.h"

namespace zenqay {
namespace {

constexpr const char* kMain = R"(NAME
    zenqayctl - runs copy jobs, and says what became of them

SYNOPSIS
    zenqayctl [--file FILE] COMMAND [ARGUMENT…]

DESCRIPTION
    A job copies service master data from an ERP into tables of a local database. zenqayctl knows jobs by their names in
    a job file, starts one process for each table, hears from it what becomes of the table, and keeps a history.

COMMANDS
    run JOB…             copies the tables of jobs
    plan JOB…            says what jobs would do to the tables, and writes nothing
    submit JOB…          hands the tables of jobs to Slurm, for many machines
    check JOB…           says what of a job's surroundings works, and what to mend
    status [JOB…]        says how fresh each table is, and who copies it
    unlock JOB TABLE     frees a table that a dead job left taken
    history [RUN]        lists past runs, or shows one whole
    serve                shows all of that as a page that goes as the runs go
    anonymise TRACE      takes the customer's names, keys and texts out of a trace and its tables
    init [DIRECTORY]     makes a first job file, with a database and an ERP to try it on
    completion SHELL     writes the completion of a shell
    systemd JOB          lets systemd's units of a job reach the paths that it needs

    zenqayctl COMMAND --help has the page of each.

OPTIONS
    --file FILE   the job file; else the one that ZENQAY_FILE names, else ./zenqay.toml, else /etc/zenqay/zenqay.toml
    --json        writes JSON, in every command
    --version     writes the version
    -h, --help    writes this page

ENVIRONMENT
    ZENQAY_FILE            the job file
    ZENQAY_DBSYNC          the program of the job, where it does not stand beside zenqayctl
    CREDENTIALS_DIRECTORY  where passwords are, in the place of credentials/ beside the job file
    XDG_STATE_HOME         where the history is: zenqay/history.db in it
    TMPDIR                 where the homes of jobs are made for a run, /tmp without it

FILES
    zenqay.toml            the job file: databases, ERPs, jobs; "zenqayctl init" makes one whose comments explain it
    credentials/NAME       beside the job file: the password of "password = { credential = "NAME" }"; chmod 0600
    ~/.local/state/zenqay/history.db
                           the history; for root and the user zenqay /var/lib/zenqay/history.db

EXIT STATUS
    The first that applies:
    2      wrong usage, or something is wrong with the job file; nothing was started
    128+n  stopped by the signal n
    124    stopped by the timeout of a job
    4      a job could not begin, or a database could not be reached
    1      a table failed
    3      a table was in use
    5      "plan" alone: something would change
    0      all complete; of "plan": nothing would change

SEE ALSO
    zenqay-dbsync --help, zenqay-dbsync-check --help; docs/control.md has the keys of the job file
)";

constexpr const char* kRun = R"(NAME
    zenqayctl run - copies the tables of jobs

SYNOPSIS
    zenqayctl run JOB… [--table TABLE]… [--full | --changed] [--allow-sweep] [--outcome FILE] [--json]

DESCRIPTION
    Starts one process for each table of the jobs, side by side up to the "parallel" of each database. Objects and
    warranties of one database follow each other. On a terminal each table has a line that is redrawn: its state, rows,
    rows a second, the time, and what is left if it takes as long as the last time. Elsewhere each change is a line.
    What is not complete stands at the end once more, with its failures and what to do next.

    Each job takes its table's lock in the database. A table whose lock another job holds is in use; one that a dead job
    left taken is taken over.

    What a later attempt can heal (connection lost, table in use, ERP not reached) is tried again as the job's "retry"
    says. Ctrl-C, SIGTERM and SIGHUP ask each job once to stop: a table that is being copied is freed, its rows stay as
    far as they came, and no further table begins. A job that has not stopped a minute later is ended, and a second
    request, later than five seconds, ends the jobs at once. If zenqayctl itself is killed, its jobs stop as if asked.

    Tables are looked up before anything is started. The job's home is derived from that of the ERP for this run, among
    the temporary files: a copy of Components.xml with absolute paths, <LOCK takeover="yes"/> and the job's sweep limit.
    What a killed zenqayctl left there goes with the next run.

OPTIONS
    --table TABLE   only this table of the jobs, by name or id; JOB:TABLE for one of several jobs; may be given more than
                    once
    --full          copies in full, whatever the job file says
    --changed       copies only what changed, whatever the job file says
    --allow-sweep   lifts the sweep limit for this run
    --outcome FILE  writes into the file, in the place of the history, what becomes of the tables: what a task of
                    zenqayctl submit is started with
    --json          a JSON object for each change, one a line, and one with the status at the end
    -h, --help      writes this page

EXIT STATUS
    The first that applies:
    2      wrong usage, or something is wrong with the job file; nothing was started
    128+n  stopped by the signal n
    124    stopped by the timeout of a job
    4      a job could not begin, or a database could not be reached
    1      a table failed, was copied and could not be freed, or its job crashed
    3      a table was in use
    0      all complete

EXAMPLES
    zenqayctl run nightly
    zenqayctl run nightly --table SITE --table OBJECT --full
    zenqayctl run nightly --json | jq -r 'select(.state == "failed") | .table + ": " + .words'
)";

constexpr const char* kPlan = R"(NAME
    zenqayctl plan - says what jobs would do to the tables, and writes nothing

SYNOPSIS
    zenqayctl plan JOB… [--table TABLE]… [--full | --changed] [--allow-sweep] [--rows NUMBER] [--keep FILE] [--json]

DESCRIPTION
    Copies the tables that the jobs use from the local database, which is only read, into a file among the temporary
    ones, runs the jobs on that file one after another as "zenqayctl run" would, and compares the tables before and
    after. The ERP is asked as a run asks it. No log, no trace, no status component, no history is written.

    For each table: the rows that it has, those that the job would insert, change and delete, those that it would write
    as they are (REWRITE), the share of the rows that the sweep of a full copy would take against the limit in force, and
    what would become of the job. Then rows as examples, by their keys: "+" one to insert, "~" one to change with the
    fields that differ, "-" one to delete. The mark of the full copy and the update times are not compared. A table of
    another job's is shown where the warranty expiry changes it.

    The file refuses what the database would: texts too long for a column, dates that it does not take, a NULL where
    there must be a value, a key twice. What it cannot show stands as a warning.

    The plan is that of the tables and the ERP as they are now. On SQLite and PostgreSQL all tables are read as of one
    moment; no job waits for it.

OPTIONS
    --table TABLE   only this table of the jobs, by name or id; JOB:TABLE for one of several jobs; may be given more than
                    once
    --full          plans full copies, whatever the job file says
    --changed       plans copies of only what changed, whatever the job file says
    --allow-sweep   as if the sweep limit were lifted
    --rows NUMBER   so many examples of each kind at most, 3 without it
    --keep FILE     keeps the tables as they are in a new file, an embedded database on which the jobs can be run again;
                    for jobs of one database
    --json          one object, as docs/plan.schema.json says
    -h, --help      writes this page

EXIT STATUS
    The first that applies:
    2      wrong usage, or something is wrong with the job file; nothing was started
    128+n  stopped by the signal n
    124    stopped by the timeout of a job
    4      a job could not begin, or a database could not be reached
    1      a job would fail
    5      something would change
    0      nothing would change

EXAMPLES
    zenqayctl plan nightly
    zenqayctl plan nightly --table SITE --full --rows 20
    zenqayctl plan nightly --json | jq '.tables[] | select(.delete > 0) | .table'
)";

constexpr const char* kSubmit = R"(NAME
    zenqayctl submit - hands the tables of jobs to Slurm, for many machines

SYNOPSIS
    zenqayctl submit JOB… | --all [--table TABLE]… [--full | --changed] [--allow-sweep] [--wait] [--partition NAME]
                     [--json] [-- OPTION…]

DESCRIPTION
    Makes one job array for each database; "parallel" tasks of it run at the same time. A task is one table; objects and
    warranties of one database, and copies of one table by several jobs, are one task. Slurm picks the nodes; the tasks
    of a database in a file stay on this machine, which must be a node. Each task is a "zenqayctl run" with the same job
    file at the same path.

    What becomes of the tables comes into the history of this machine: tasks leave it in the "shared" directory of
    [batch] in the job file, and a further job, behind all others, reads it. "zenqayctl status" and "zenqayctl history"
    read what there is, whether that job has run or not, and status says which tasks are queued and which run where. Of a
    task that left nothing, the word of Slurm is kept.

    A task whose node died is begun anew by Slurm. It waits as long as "requeue-wait" says for what is left of the dead
    one to go, frees the table and copies it.

    OPTION behind -- is one of sbatch, with its value behind "=": --mem=2G, --time=30, --account=erp. It goes to every
    array and to the job behind them. Passwords of the environment cannot be handed on; nor is anything else of it but
    where programs, libraries and drivers are.

OPTIONS
    --all             all jobs of the file
    --table TABLE     only this table of the jobs, by name or id; JOB:TABLE for one of several jobs; may be given more
                      than once
    --full            copies in full, whatever the job file says
    --changed         copies only what changed, whatever the job file says
    --allow-sweep     lifts the sweep limit for these tasks
    --wait            waits for the end of all tasks, shows each change as "zenqayctl run" does, and ends with the status
                      of their tables; interrupted, it leaves the tasks to themselves
    --partition NAME  of the nodes
    --json            one object: the run, the arrays, what was not handed over; with --wait that of "zenqayctl run"
    -h, --help        writes this page

EXIT STATUS
    Without --wait: 0 everything is handed over, 4 something could not be, or Slurm does not answer, 2 wrong usage or job
    file. With --wait, the first that applies:
    2      wrong usage, or something is wrong with the job file; nothing was handed over
    128+n  stopped by the signal n; 143 also for tasks that were cancelled
    124    stopped by the timeout of a job, or by Slurm's time limit
    4      a job could not begin, or a database could not be reached
    1      a table failed, or its task was lost
    3      a table was in use
    0      all complete

EXAMPLES
    zenqayctl submit nightly
    zenqayctl submit --all --wait --partition night -- --time=60 --mem=1G
    zenqayctl status && squeue --me
)";

constexpr const char* kCheck = R"(NAME
    zenqayctl check - says what of a job's surroundings works, and what to mend

SYNOPSIS
    zenqayctl check [JOB…] [--json]

DESCRIPTION
    Looks, for each of the jobs or for all of the file, at what zenqay-dbsync-check looks at: the line, the log
    directory, the texts, the components, the database and the tables. Nothing is changed, and no password is shown. What
    concerns several tables of a job is said once. A line begins with

    ok        it works
    warning   a job runs, but see to it
    MEND      no job gets past it
    left out  it needs something that failed

OPTIONS
    --json       a list of jobs, each with its lines
    -h, --help   writes this page

EXIT STATUS
    0 all can run, 4 one cannot, 2 wrong usage or job file.

EXAMPLES
    zenqayctl check nightly
    zenqayctl check --json | jq -r '.[] | select(.can_run | not) | .job'
)";

constexpr const char* kStatus = R"(NAME
    zenqayctl status - says how fresh each table is, and who copies it

SYNOPSIS
    zenqayctl status [JOB…] [--json]

DESCRIPTION
    For each table of the jobs, or of all jobs of the file: up to when its data is current (in UTC) and how long ago that
    was, whether it is free or taken, by which process and whether that lives, whether the lock of a taken one is held,
    and what became of its last run; of one that was submitted, whether it is queued or runs, and where, as far as Slurm
    answers. The database is only read, and no job is kept from a lock (on Oracle, which cannot be asked, the lock of a
    taken table is taken for an instant).

    Who has taken a table is known of jobs that zenqayctl started. A taken table whose lock is free was left behind, or
    is copied by a job that does not use the lock.

OPTIONS
    --json       a list of tables
    -h, --help   writes this page

EXIT STATUS
    0, 4 when a database could not be reached, 2 wrong usage or job file.

EXAMPLES
    zenqayctl status
    zenqayctl status nightly --json | jq -r '.[] | select(.updated == null or .age_seconds > 86400) | .table'
)";

constexpr const char* kUnlock = R"(NAME
    zenqayctl unlock - frees a table that a dead job left taken

SYNOPSIS
    zenqayctl unlock JOB TABLE [--force] [--json]

DESCRIPTION
    A table is taken while a job copies it. A job that died left it taken; zenqayctl run finds that out by itself and
    goes on. unlock is for a table that other starters are to copy.

    It takes the table's lock first, so that no job begins meanwhile, and gives it back behind. The table is freed when
    the lock was free and the job that took the table last was zenqayctl's, which hold the lock as long as they have a
    table. A table whose lock is held, or whose flag may have been set by a job without the lock, needs --force. Two
    copies of one table at the same time duplicate rows: use --force only when no job copies the table.

OPTIONS
    --force      takes the flag off whoever set it; a lock that a job holds stays with it
    --json       one object: the table, what was done ("none" or "freed"), and why
    -h, --help   writes this page

EXIT STATUS
    0 the table is free, 3 it is taken, 4 the database could not be reached, 2 wrong usage or job file.

EXAMPLES
    zenqayctl unlock nightly SITE
    zenqayctl unlock nightly SITE --force
)";

constexpr const char* kHistory = R"(NAME
    zenqayctl history - lists past runs, or shows one whole

SYNOPSIS
    zenqayctl history [RUN] [--limit NUMBER] [--json]

DESCRIPTION
    Without RUN, the runs with their start (in UTC), duration, tables, rows and outcome, the latest first. With the number
    of one: its tables with their counts, their failure records with the statement or the component call, and the end of
    the run log of each that was not complete. A run whose zenqayctl died is lost; one that has no end yet is running.

    Runs are kept as long as "keep" in [history] of the job file says, 400 days without it.

OPTIONS
    --limit NUMBER   so many runs at most, 20 without it
    --json           a list of runs, or one run with its tables and their records
    -h, --help       writes this page

FILES
    $XDG_STATE_HOME/zenqay/history.db, else ~/.local/state/zenqay/history.db; for root and the user zenqay
    /var/lib/zenqay/history.db

EXIT STATUS
    0, 2 when there is no such run, 4 when the history cannot be read.

EXAMPLES
    zenqayctl history --limit 5
    zenqayctl history 12
)";

constexpr const char* kServe = R"(NAME
    zenqayctl serve - shows the tables and the runs as a page

SYNOPSIS
    zenqayctl serve [--listen ADDRESS:PORT] [--host NAME]… [--token-file FILE] [--allow-actions] [--json]

DESCRIPTION
    A page for browsers, until it is stopped: how fresh each table is, runs as they go, a run with its failure records
    and the ends of its logs, plots of duration, rows and rows a second. It shows the jobs of the job file, which is read
    anew, and all of the history, whoever started the runs. Databases are only read, every ten seconds at most and only
    while somebody looks.

    /metrics is for Prometheus, /healthz for whoever asks whether the page is there, /events for who wants to hear that
    something has changed, /api/tables, /api/runs and /api/runs/NUMBER for programs.

    The page is for this machine. On any other address than the loopback it needs a token for reading too: the password
    of any user in a browser, or "Authorization: Bearer TOKEN". It speaks no TLS: put a proxy in front of it, or come
    through ssh -L. By another name than localhost or an address in digits it answers only where --host says so.

    Runs that are started on the page end with it: when it is stopped they are asked to stop, and waited for.

OPTIONS
    --listen ADDRESS:PORT   where it listens, 127.0.0.1:8930 without it; port 0 is one that is free
    --host NAME             a name that the page is asked by, behind a proxy for example; may be given more than once
    --token-file FILE       holds the token, of 16 characters at least; others must not be able to read it
    --allow-actions         buttons that start jobs and unlock tables, as "unlock" without --force; they need the token
    --json                  writes the address of the page as an object
    -h, --help              writes this page

EXIT STATUS
    0 stopped by a signal, 4 the address cannot be listened on, 2 wrong usage or job file.

EXAMPLES
    zenqayctl serve
    zenqayctl serve --listen 0.0.0.0:8930 --host dbhost.example --token-file /etc/zenqay/credentials/page --allow-actions
    curl -s http://127.0.0.1:8930/api/tables | jq -r '.[] | select(.age_seconds > 86400) | .table'
)";

constexpr const char* kAnonymise = R"(NAME
    zenqayctl anonymise - takes the customer's names, keys and texts out of a trace and its tables

SYNOPSIS
    zenqayctl anonymise TRACE [--scratch FILE] --out DIRECTORY [--json]

DESCRIPTION
    Writes a trace anew, and an SQLite file with the local tables that belongs to it, in which each word of the customer's
    is another one. Lengths, upper and lower case, digits as digits, quotes, blanks, nulls, dates and numbers stay, what
    was equal stays equal in both files, and the job takes the same way with them. docs/anonymise.md says what stays and
    what that protects from. Needs no job file.

    The directory is made; one that exists ends it. What it was made by is kept nowhere: it cannot be turned back, and
    what two calls make does not fit together. Look the result through before you send it.

OPTIONS
    --scratch FILE    the tables
    --out DIRECTORY   is made, for trace.jsonl and scratch.db; nobody but its owner may read them
    --json            the files and the counts as an object
    -h, --help        writes this page

EXIT STATUS
    0, 2 for wrong usage and for a file that is no trace, 4 when the tables cannot be read or a file not be written.

EXAMPLES
    zenqayctl anonymise trace-4711.jsonl --scratch scratch.db --out for-support
)";

constexpr const char* kInit = R"(NAME
    zenqayctl init - makes a first job file, with a database and an ERP to try it on

SYNOPSIS
    zenqayctl init [DIRECTORY] [--json]

DESCRIPTION
    Makes, in the directory or here: zenqay.toml, whose comments explain every key; service.db, an embedded database with
    the tables that jobs need; home/, an ERP of exports; and log/. The job "demo" runs at once. Nothing that is there is
    overwritten: a zenqay.toml, a service.db or a home that exists ends it.

OPTIONS
    --json       the path of the job file
    -h, --help   writes this page

EXIT STATUS
    0, 2 when one of the files exists.

EXAMPLES
    zenqayctl init /srv/zenqay && zenqayctl --file /srv/zenqay/zenqay.toml run demo
)";

constexpr const char* kCompletion = R"(NAME
    zenqayctl completion - writes the completion of a shell

SYNOPSIS
    zenqayctl completion bash|zsh|jobs

DESCRIPTION
    Writes what a shell needs to complete commands, options and the names of jobs. "jobs" writes the names of the jobs,
    one a line, which is what the shells ask for.

OPTIONS
    --json       has no meaning here
    -h, --help   writes this page

EXIT STATUS
    0, 2 for another shell, and for "jobs" when there is no job file that can be read.

EXAMPLES
    zenqayctl completion bash >/etc/bash_completion.d/zenqayctl
    zenqayctl completion zsh >~/.zfunc/_zenqayctl
)";

constexpr const char* kSystemd = R"(NAME
    zenqayctl systemd - lets systemd's units of a job reach the paths that it needs

SYNOPSIS
    zenqayctl systemd JOB [--directory DIRECTORY] [--json]

DESCRIPTION
    zenqay@JOB.service runs a job, zenqay@JOB.timer every night, and zenqay-page.service the status page. These units
    may write to /var/lib/zenqay and /var/log/zenqay, and see no home and nothing of /tmp. systemd writes a drop-in for
    the service and one for the page with what the job file and the ERP's Components.xml name: the directory of an
    embedded database, logs, status files, traces and the "shared" directory of [batch], to be written to; exports,
    classes and sockets, where they are hidden from the units otherwise; the file system of each; the credential of the
    database; and the job file, where it is not /etc/zenqay/zenqay.toml. What stood in the drop-ins is replaced: call it
    again when the job has changed.

    The password of "password = { env = … }" is not among it: give the units an EnvironmentFile= that only root can read.

OPTIONS
    --directory DIRECTORY   where the units are, /etc/systemd/system without it
    --json                  the paths of the drop-ins
    -h, --help              writes this page

EXIT STATUS
    0, 2 for wrong usage or job file and for a job or a path that no unit can name, 4 when a drop-in cannot be written.

EXAMPLES
    zenqayctl systemd nightly && systemctl daemon-reload && systemctl enable --now zenqay@nightly.timer
)";

}  // namespace

Text HelpOf(const Text& command) {
  constexpr std::pair<const char*, const char*> kPages[] = {
      {"", kMain},
      {"run", kRun},
      {"plan", kPlan},
      {"submit", kSubmit},
      {"check", kCheck},
      {"status", kStatus},
      {"unlock", kUnlock},
      {"history", kHistory},
      {"serve", kServe},
      {"init", kInit},
      {"completion", kCompletion},
      {"systemd", kSystemd},
      {"anonymise", kAnonymise},
  };
  for (const auto& [name, page] : kPages) {
    if (command == name) return page;
  }
  return "";
}

}  // namespace zenqay
