#!/usr/bin/env bash
# What Prometheus says of the page's metrics and of the example of alert rules, in the directory named.
set -euo pipefail
rules=$1/zenqay.rules.yml
here=$(cd "$(dirname "$0")" && pwd)
home=$(mktemp -d)
page=
trap '[ -z "$page" ] || { kill "$page" && wait "$page" || true; }; rm -rf "$home"' EXIT
export XDG_STATE_HOME=$home/state ZENQAY_FILE=$home/home/zenqay.toml ZENQAY_DBSYNC=$ZENQAY_FAKE_JOB

"$ZENQAYCTL" init "$home/home" >/dev/null
printf '%s\n' '{"kind":"begin","channel":1,"pid":1,"version":"0"}' '{"kind":"started","id":1,"table":"SITE"}' \
  '{"kind":"complete","id":1,"table":"SITE","inserted":3,"updated":2,"deleted":1}' >"$home/home/log/1.script"
"$ZENQAYCTL" run demo --table SITE >/dev/null
mkfifo "$home/said"
"$ZENQAYCTL" serve --listen 127.0.0.1:0 --json >"$home/said" &
page=$!
read -r said <"$home/said"
url=${said#*:\"}
url=${url%\"*}

# The parts of HTTP that this needs are in the shell.
address=${url#http://}
address=${address%/}
exec 3<>"/dev/tcp/${address%:*}/${address##*:}"
printf 'GET /metrics HTTP/1.1\r\nHost: %s\r\n\r\n' "$address" >&3
sed '1,/^\r$/d' <&3 >"$home/metrics"

grep -q '^zenqay_table_last_run_rows{job="demo",database="service",table="SITE",rows="inserted"} 3$' "$home/metrics"
promtool check metrics <"$home/metrics"
promtool check rules "$rules"
cp "$rules" "$here/zenqay.rules.test.yml" "$home"
promtool test rules "$home/zenqay.rules.test.yml"
