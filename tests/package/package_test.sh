#!/usr/bin/env bash
# Tries the Debian package that scripts/package has made of a build.
#
#   package_test.sh TEST BUILD PACKAGES      one of the tests below; the package is in PACKAGES
#   package_test.sh can_make_root            ends with 0 where a bare Debian can be made
set -euo pipefail

test=$1
build=${2:-}
packages=${3:-}
sources=$(realpath "$(dirname "$0")/../..")
work=$(mktemp -d /tmp/package.XXXXXX)  # the units' drop-ins tell what is there in a way of its own
trap 'umount --recursive --lazy "$work" 2>/dev/null || true; rm -rf --one-file-system "$work"' EXIT

fail() { echo "$*" >&2; exit 1; }

# Compares a whole text: expect WHAT ACTUAL <<END
expect() {
  diff -u --label expected --label actual - <(printf '%s\n' "$2") || fail "not as expected: $1"
}

package() { echo "$packages"/zenqay-dbsync_*.deb; }

unpack() { dpkg-deb --extract "$(package)" "$work/unpacked"; }

# Those of --help, without the titles.
words() { sed -E '/^ *[A-Z][A-Z ]*$/d' | grep -oE '[[:alnum:]]+'; }

shown_man() { MANWIDTH=200 man --nh --nj -l "$work/unpacked/usr/share/man/$1.gz" | sed '1d;$d'; }

help_of_zenqayctl() {
  "$build/zenqayctl" --help | sed '/^SEE ALSO$/,$d'
  "$build/zenqayctl" --help | sed -n '/^COMMANDS$/,/^$/s/^    \([a-z]*\) .*/\1/p' | while read -r command; do
    "$build/zenqayctl" "$command" --help
  done
}

man_pages_say_what_help_says() {
  unpack
  for program in zenqay-dbsync zenqay-dbsync-check; do
    diff <("$build/$program" --help | words) <(shown_man "man8/$program.8" | words) || fail "$program(8) differs"
  done
  diff <(help_of_zenqayctl | words) <(shown_man man8/zenqayctl.8 | sed '/^SEE ALSO$/,$d' | words) ||
    fail "zenqayctl(8) differs"
  shown_man man5/zenqay.toml.5 >"$work/shown"
  sed -n '/^## The job file/,/^## A run/s/^| `\([^`]*\)`.*/\1/p' "$sources/docs/control.md" >"$work/keys"
  while read -r key; do grep -qF "$key" "$work/shown" || fail "zenqay.toml(5) lacks $key"; done <"$work/keys"
  [ "$(wc -l <"$work/keys")" -gt 20 ] || fail "docs/control.md has no table of keys"
}

# The units as they would run, from where the package is unpacked.
units_are_closed() {
  unpack
  local units=$work/units
  mkdir "$units"
  for unit in "$work"/unpacked/lib/systemd/system/*; do
    sed "s|=/usr/bin/|=$work/unpacked/usr/bin/|" "$unit" >"$units/$(basename "$unit")"
  done
  "$build/zenqayctl" init "$work/site" >/dev/null
  "$build/zenqayctl" --file "$work/site/zenqay.toml" systemd demo --directory "$units" >/dev/null
  expect "the drop-in of the job" "$(sed "s|$work|WORK|g" "$units/zenqay@demo.service.d/zenqay.conf")" <<'END'
# Made by "zenqayctl systemd demo" from WORK/site/zenqay.toml.
[Unit]
RequiresMountsFor=WORK/site WORK/site/log WORK/site/home WORK/site/home/erp

[Service]
Environment="ZENQAY_FILE=WORK/site/zenqay.toml"
BindPaths=WORK/site WORK/site/log
BindReadOnlyPaths=WORK/site/home WORK/site/home/erp
END
  mkdir "$work/erp home 100%"
  echo '<COMPONENTS><HOST prefix="java:" kind="jvm" classpath="/opt/adapter/*.jar"/></COMPONENTS>' \
    >"$work/erp home 100%/Components.xml"
  cat >"$work/server.toml" <<END
[database.service]
connection = "Driver=PostgreSQL Unicode;Server=/tmp/sockets;UID=zenqay;PWD={password}"
password = { credential = "service" }
[erp.main]
home = "erp home 100%"
generation = 3
[job.server]
database = "service"
erp = "main"
logs = "/home/zenqay/log"
END
  "$build/zenqayctl" --file "$work/server.toml" systemd server --directory "$units" >/dev/null
  expect "the drop-in of the job on a server" "$(sed "s|$work|WORK|g" "$units/zenqay@server.service.d/zenqay.conf")" <<'END'
# Made by "zenqayctl systemd server" from WORK/server.toml.
[Unit]
RequiresMountsFor=/home/zenqay/log WORK /tmp/sockets "WORK/erp home 100%%" /opt/adapter

[Service]
Environment="ZENQAY_FILE=WORK/server.toml"
LoadCredential=service:WORK/credentials/service
ProtectHome=tmpfs
BindPaths=/home/zenqay/log
BindReadOnlyPaths=WORK /tmp/sockets "WORK/erp home 100%%"
MemoryDenyWriteExecute=no
END
  expect "what systemd says of the units" "$(SYSTEMD_UNIT_PATH=$units: MANPATH=$work/unpacked/usr/share/man \
    systemd-analyze verify zenqay@demo.service zenqay@demo.timer zenqay@server.service zenqay-page.service 2>&1)" <<<""
  cp "$units/zenqay@.service" "$units/zenqay@closed.service"
  cat "$units/zenqay@.service" "$units/zenqay@server.service.d/zenqay.conf" >"$units/zenqay@server.service"
  for unit in zenqay@closed.service zenqay@server.service zenqay-page.service; do
    systemd-analyze security --no-pager --offline=yes --threshold=20 "$units/$unit" >"$work/exposure" ||
      { cat "$work/exposure"; fail "$unit is open"; }
  done
}

# Old run logs go, younger ones stay, and the other two logs are turned each month.
logs_are_turned() {
  unpack
  local logs=$work/logs
  mkdir "$logs"
  sed -e "s|/var/log/zenqay|$logs|g" -e '/^ *su /d' "$work/unpacked/etc/logrotate.d/zenqay-dbsync" >"$work/logrotate.conf"
  for log in SITE_20260101.log OBJECT_20260401.log ZenqayDBSync.log ZNQevtLG.txt other.txt; do echo old >"$logs/$log"; done
  touch -d '91 days ago' "$logs/SITE_20260101.log"
  touch -d '89 days ago' "$logs/OBJECT_20260401.log"
  { echo 'logrotate state -- version 2'; printf '"%s" 2020-1-1-0:0:0\n' "$logs"/*; } >"$work/state"
  chmod 0644 "$work/logrotate.conf"
  chmod 0600 "$work/state"

  logrotate --state "$work/state" "$work/logrotate.conf"

  expect "the log directory" "$(ls "$logs")" <<'END'
OBJECT_20260401.log
ZNQevtLG.txt.1
ZenqayDBSync.log.1
other.txt
END
}

# It takes the rights of root, and the mirror that this system's apt takes its packages from.
can_make_root() {
  [ "$(id -u)" -eq 0 ] && command -v mmdebstrap && unshare --mount mount -t tmpfs none /mnt || return 1
  local mirror
  mirror=$(apt-get indextargets --format '$(REPO_URI)dists/$(RELEASE)/Release' | head -n 1)
  [ -n "$mirror" ] && /usr/lib/apt/apt-helper -o Acquire::Retries=0 -o Acquire::http::Timeout=20 download-file "$mirror" \
    "$work/Release"
}

# A Debian that has what is essential and what the package needs (of alternatives the first, as apt takes them), made once,
# with the sources and settings of this apt.
make_root() {
  local include tar
  include=$(dpkg-deb --field "$(package)" Depends | sed 's/ *([^)]*)//g; s/ *|[^,]*//g; s/ //g')
  tar=$packages/../debian-$(echo "$include" | md5sum | cut -c 1-8).tar
  if [ ! -f "$tar" ]; then
    local mirrors=()
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources; do
      [ ! -s "$file" ] || mirrors+=("$file")
    done
    apt-config dump Acquire >"$work/apt.conf"
    # The number of a pipe goes through sh, which takes one digit: what was inherited makes room.
    TMPDIR=$work mmdebstrap --format=tar --variant=essential --include="$include" --aptopt="$work/apt.conf" --dpkgopt=force-unsafe-io \
      --dpkgopt='path-exclude=/usr/share/locale/*' "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$tar.new" \
      "${mirrors[@]}" 2>"$work/bootstrap" 3>&- 4>&- 5>&- 6>&- 7>&- 8>&- 9>&- ||
      { grep '^[EW]:' "$work/bootstrap" >&2 || true; fail "no root can be made"; }
    mv "$tar.new" "$tar"
  fi
  root=$work/root
  mkdir "$root"
  tar --extract --file "$tar" --directory "$root" --exclude './dev/*'
  mount --bind /dev "$root/dev"
  mount -t proc proc "$root/proc"
}

in_root() {
  chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive "$@"
}

# What stands in the root but for dpkg's own notes and what the trial puts into /srv, in $work/NAME.
take_stock() {
  in_root find / -xdev \( -path /proc -o -path /run -o -path /sys -o -path /dev -o -path /tmp -o -path /srv -o -path /var/lib/dpkg \
    -o -path /var/log/dpkg.log \) -prune -o -printf '%p %M %u:%g\n' | sed 's/_[0-9]\{8\}\.log/_DAY.log/' | LC_ALL=C sort >"$work/$1"
}

# What came (+) or went (-) between two stocks.
between() { { diff "$work/$1" "$work/$2" || true; } | sed -n 's/^> /+/p; s/^< /-/p'; }

# A later version of the package, with a job file and a setting of the logs that are not those of the first.
make_upgrade() {
  dpkg-deb --raw-extract "$(package)" "$work/upgrade"
  sed -i 's/^Version: .*/&.1/' "$work/upgrade/DEBIAN/control"
  echo '# later' >>"$work/upgrade/etc/zenqay/zenqay.toml"
  echo '# later' >>"$work/upgrade/etc/logrotate.d/zenqay-dbsync"
  dpkg-deb --root-owner-group --build "$work/upgrade" "$root/tmp/upgrade.deb" >/dev/null
}

# Runs in the root, silent unless it fails.
quietly() { in_root "$@" >"$work/said" 2>&1 || { cat "$work/said" >&2; fail "failed: $*"; }; }

as_zenqay() { in_root runuser -u zenqay -- "$@"; }

# How a document makes the page's token.
token_of() { sed -n 's/^    \(head -c .*\)/\1/p' "$sources/$1"; }

run_demo() { as_zenqay zenqayctl --file /srv/zenqay/zenqay.toml run demo | tail -n 1; }

# In mounts of its own, which go with it; in memory, since no test depends on a disk.
trial_in_a_root() {
  unshare --mount "$0" trial_in_own_mounts "$build" "$packages"
}

trial_in_own_mounts() {
  mount -t tmpfs -o size=2G,mode=0755 none "$work"
  make_root
  cp "$(package)" "$root/tmp/package.deb"
  make_upgrade
  take_stock before

  echo "- installed"
  quietly dpkg --install /tmp/package.deb
  take_stock installed
  expect "what came with the package" \
    "$(between before installed | grep -vE '^\+/usr/share/(doc/)?zenqay')" <<'END'
+/etc/gshadow- ---------- root:root
+/etc/logrotate.d/zenqay-dbsync -rw-r--r-- root:root
+/etc/shadow- ---------- root:root
+/etc/zenqay drwxr-xr-x root:root
+/etc/zenqay/credentials drwxr-x--- root:zenqay
+/etc/zenqay/zenqay.toml -rw-r--r-- root:root
+/usr/bin/zenqay-dbsync -rwxr-xr-x root:root
+/usr/bin/zenqay-dbsync-check -rwxr-xr-x root:root
+/usr/bin/zenqayctl -rwxr-xr-x root:root
+/usr/lib/systemd/system/zenqay-page.service -rw-r--r-- root:root
+/usr/lib/systemd/system/zenqay@.service -rw-r--r-- root:root
+/usr/lib/systemd/system/zenqay@.timer -rw-r--r-- root:root
+/usr/lib/sysusers.d/zenqay-dbsync.conf -rw-r--r-- root:root
+/usr/lib/tmpfiles.d/zenqay-dbsync.conf -rw-r--r-- root:root
+/usr/share/bash-completion/completions/zenqayctl -rw-r--r-- root:root
+/usr/share/lintian/overrides/zenqay-dbsync -rw-r--r-- root:root
+/usr/share/man/man5/zenqay.toml.5.gz -rw-r--r-- root:root
+/usr/share/man/man8/zenqay-dbsync-check.8.gz -rw-r--r-- root:root
+/usr/share/man/man8/zenqay-dbsync.8.gz -rw-r--r-- root:root
+/usr/share/man/man8/zenqayctl.8.gz -rw-r--r-- root:root
+/usr/share/zsh/vendor-completions/_zenqayctl -rw-r--r-- root:root
+/var/lib/systemd/deb-systemd-helper-enabled/zenqay-page.service.dsh-also -rw-r--r-- root:root
+/var/lib/zenqay drwxr-x--- zenqay:zenqay
+/var/lib/zenqay/history.db -rw------- zenqay:zenqay
+/var/log/zenqay drwxr-x--- zenqay:zenqay
END
  expect "the user" "$(in_root getent passwd zenqay | sed 's/:[0-9]*:[0-9]*:/:N:N:/')" <<'END'
zenqay:x:N:N:Zenqay DB Sync:/var/lib/zenqay:/usr/sbin/nologin
END
  expect "what is enabled" "$(in_root systemctl is-enabled zenqay-page.service zenqay@nightly.timer || true)" <<'END'
disabled
disabled
END
  expect "what systemd says" \
    "$(in_root systemd-analyze verify --man=no zenqay@nightly.service zenqay@nightly.timer zenqay-page.service 2>&1)" <<<""
  local jobs
  jobs=$(in_root zenqayctl completion jobs) || fail "the job file cannot be read"
  expect "the jobs of the job file" "$jobs" <<<""

  echo "- a job to try"
  in_root install -d -o zenqay -g zenqay /srv/zenqay
  as_zenqay zenqayctl init /srv/zenqay >"$work/said"
  expect "the run" "$(run_demo)" <<<"7 complete"
  expect "root's history" "$(in_root zenqayctl history | grep -o 'all complete')" <<<"all complete"

  echo "- a job of one's own in the job file, with German texts, and its units"
  in_root sed -i 's/^#\([^ ]\)/\1/' /etc/zenqay/zenqay.toml
  in_root install -d /etc/zenqay/main
  in_root ln -s /usr/share/zenqay-dbsync/I18nText.xml /usr/share/zenqay-dbsync/I18nText.de.xml /etc/zenqay/main/
  in_root sed 's/<!-- \(<TEXTS.*>\) -->/\1/' /usr/share/zenqay-dbsync/Components.xml >"$root/etc/zenqay/main/Components.xml"
  in_root ln -s /srv/zenqay/home/erp /etc/zenqay/main/
  as_zenqay cp /srv/zenqay/service.db /var/lib/zenqay/
  expect "the check" "$(as_zenqay zenqayctl check nightly | tail -n 1)" <<<"  It can run."
  expect "the run of one's own" "$(as_zenqay zenqayctl run nightly | tail -n 1)" <<<"7 complete"
  expect "a run log" "$(tail -n 1 "$root"/var/log/zenqay/SITE_*.log | tr -d '\r')" <<<'"Kopierte Zeilen: SITE -  6"'
  quietly zenqayctl systemd nightly
  quietly systemctl enable zenqay@nightly.timer
  expect "what systemd says of the job's units" \
    "$(in_root systemd-analyze verify --man=no zenqay@nightly.service zenqay@nightly.timer zenqay-page.service 2>&1)" <<<""

  echo "- the page with a token, as the documents say it"
  local page=/etc/systemd/system/zenqay-page.service.d/override.conf
  expect "the same token in both documents" "$(token_of docs/page.md)" <<<"$(token_of docs/installing.md)"
  in_root sh -c "$(token_of docs/installing.md)"
  expect "who can read the token" "$(in_root stat --format='%A %U:%G' /etc/zenqay/credentials/page)" <<<"-rw-r----- root:zenqay"
  sed -n '/^    \[Service\]$/,/^$/s/^    //p' "$sources/docs/installing.md" >"$root$page"
  expect "what systemd says of the page's unit" \
    "$(in_root systemd-analyze verify --man=no zenqay-page.service 2>&1)" <<<""
  # An address of the documents' own, which no machine has: the token is read, and nothing listens.
  local serve
  serve=$(sed -n 's/^ExecStart=\(..*\)/\1/p' "$root$page")
  expect "the page" "$(as_zenqay sh -c "${serve/127.0.0.1/192.0.2.1}" 2>&1)" \
    <<<"zenqayctl: Permission denied: 192.0.2.1:8930 cannot be listened on, or another program does"
  in_root rm /etc/zenqay/credentials/page "$page"

  echo "- a later version, when the job file was changed and the logs' settings were not"
  echo '# ours' >>"$root/etc/zenqay/zenqay.toml"
  echo secret >"$root/etc/zenqay/credentials/service"
  quietly dpkg --install --force-confold /tmp/upgrade.deb
  expect "the end of the job file" "$(tail -n 1 "$root/etc/zenqay/zenqay.toml")" <<<"# ours"
  expect "the end of the logs' settings" "$(tail -n 1 "$root/etc/logrotate.d/zenqay-dbsync")" <<<"# later"
  expect "the run of the later version" "$(run_demo)" <<<"7 complete"
  as_zenqay touch /var/log/zenqay/ZNQevtLG.txt.2.gz

  echo "- removed"
  quietly dpkg --remove zenqay-dbsync
  take_stock removed
  expect "what stays of a removed package" "$(between before removed)" <<'END'
+/etc/gshadow- ---------- root:root
+/etc/logrotate.d/zenqay-dbsync -rw-r--r-- root:root
+/etc/shadow- ---------- root:root
+/etc/systemd/system/timers.target.wants/zenqay@nightly.timer lrwxrwxrwx root:root
+/etc/systemd/system/zenqay-page.service.d drwxr-xr-x root:root
+/etc/systemd/system/zenqay-page.service.d/zenqay-nightly.conf -rw-r--r-- root:root
+/etc/systemd/system/zenqay@nightly.service.d drwxr-xr-x root:root
+/etc/systemd/system/zenqay@nightly.service.d/zenqay.conf -rw-r--r-- root:root
+/etc/zenqay drwxr-xr-x root:root
+/etc/zenqay/credentials drwxr-x--- root:zenqay
+/etc/zenqay/credentials/service -rw-r--r-- root:root
+/etc/zenqay/main drwxr-xr-x root:root
+/etc/zenqay/main/Components.xml -rw-r--r-- root:root
+/etc/zenqay/main/I18nText.de.xml lrwxrwxrwx root:root
+/etc/zenqay/main/I18nText.xml lrwxrwxrwx root:root
+/etc/zenqay/main/erp lrwxrwxrwx root:root
+/etc/zenqay/zenqay.toml -rw-r--r-- root:root
+/etc/zenqay/zenqay.toml.dpkg-dist -rw-r--r-- root:root
+/var/lib/systemd/deb-systemd-helper-enabled/zenqay-page.service.dsh-also -rw-r--r-- root:root
+/var/lib/zenqay drwxr-x--- zenqay:zenqay
+/var/lib/zenqay/history.db -rw------- zenqay:zenqay
+/var/lib/zenqay/service.db -rw------- zenqay:zenqay
+/var/lib/zenqay/service.db-lock -rw-r--r-- zenqay:zenqay
+/var/log/zenqay drwxr-x--- zenqay:zenqay
+/var/log/zenqay/CONTRACTS_DAY.log -rw-r--r-- zenqay:zenqay
+/var/log/zenqay/OBJECT_DAY.log -rw-r--r-- zenqay:zenqay
+/var/log/zenqay/PRIORITY_DAY.log -rw-r--r-- zenqay:zenqay
+/var/log/zenqay/PROBLEM_DAY.log -rw-r--r-- zenqay:zenqay
+/var/log/zenqay/SITECONTRACT_DAY.log -rw-r--r-- zenqay:zenqay
+/var/log/zenqay/SITE_DAY.log -rw-r--r-- zenqay:zenqay
+/var/log/zenqay/WARRANTIES_DAY.log -rw-r--r-- zenqay:zenqay
+/var/log/zenqay/ZNQevtLG.txt.2.gz -rw-r--r-- zenqay:zenqay
END

  echo "- purged"
  quietly dpkg --purge zenqay-dbsync
  take_stock purged
  expect "what stays of a purged package: what others put there, and the user" "$(between before purged)" <<'END'
+/etc/gshadow- ---------- root:root
+/etc/shadow- ---------- root:root
+/etc/zenqay drwxr-xr-x root:root
+/etc/zenqay/credentials drwxr-x--- root:zenqay
+/etc/zenqay/credentials/service -rw-r--r-- root:root
+/etc/zenqay/main drwxr-xr-x root:root
+/etc/zenqay/main/Components.xml -rw-r--r-- root:root
+/etc/zenqay/main/I18nText.de.xml lrwxrwxrwx root:root
+/etc/zenqay/main/I18nText.xml lrwxrwxrwx root:root
+/etc/zenqay/main/erp lrwxrwxrwx root:root
+/var/lib/zenqay drwxr-x--- zenqay:zenqay
+/var/lib/zenqay/service.db -rw------- zenqay:zenqay
+/var/lib/zenqay/service.db-lock -rw-r--r-- zenqay:zenqay
END
  expect "what stays for dpkg" "$(in_root dpkg-query --show zenqay-dbsync 2>&1)" <<<"dpkg-query: no packages found matching zenqay-dbsync"
}

# Where no root can be made: the programs run from where the package is unpacked.
trial_of_the_unpacked() {
  unpack
  local bin=$work/unpacked/usr/bin jobs
  export XDG_STATE_HOME=$work/state
  "$bin/zenqayctl" init "$work/site" >/dev/null
  expect "the run" "$("$bin/zenqayctl" --file "$work/site/zenqay.toml" run demo | tail -n 1)" <<<"7 complete"
  jobs=$("$bin/zenqayctl" --file "$work/unpacked/etc/zenqay/zenqay.toml" completion jobs) || fail "the job file cannot be read"
  expect "the jobs of the job file" "$jobs" <<<""
}

case $test in
  man_pages_say_what_help_says | units_are_closed | logs_are_turned | can_make_root | trial_in_a_root | trial_in_own_mounts | \
    trial_of_the_unpacked)
    "$test"
    ;;
  *) fail "there is no test $test" ;;
esac
