#!/bin/sh
# A CUPS server of its own for tests: private_cups.sh DIR QUEUE...
# Serves DIR/run/cups.sock until it is killed. What a queue prints becomes DIR/out/QUEUE-NUMBER.bin.
# Says "pronto" once all queues are there; the first is the default.
set -eu
directory=$1
shift
system=/usr/lib/cups

mkdir -p "$directory/etc/ssl" "$directory/etc/ppd" "$directory/spool/tmp" "$directory/cache" "$directory/run/certs" \
  "$directory/log" "$directory/out" "$directory/bin/backend"
# Root's server runs its back ends as another user.
chmod 755 "$directory"
chmod 777 "$directory/out"

for part in cgi-bin daemon driver filter monitor notifier command; do
  [ ! -e "$system/$part" ] || ln -sfn "$system/$part" "$directory/bin/$part"
done
cat >"$directory/bin/backend/capture" <<'BACKEND'
#!/bin/sh
# argv: job user title copies options [file]
[ $# -gt 0 ] || { echo 'file capture:/ "Unknown" "Capture"'; exit 0; }
folder=${DEVICE_URI#capture:}
# What the printer has to report while it prints, such as "+media-empty-warning".
[ ! -e "$folder/.state" ] || sed 's/^/STATE: /' "$folder/.state" >&2
unfinished=$folder/.$PRINTER-$1
if [ $# = 6 ]; then cat "$6"; else cat; fi >"$unfinished" || exit 1
mv "$unfinished" "$folder/$PRINTER-$1.bin"
BACKEND
chmod 755 "$directory/bin/backend/capture"

user=$(id -un)
group=$(id -gn)
admins=$group
if [ "$(id -u)" = 0 ]; then
  user=lp group=lp admins=root
fi
cat >"$directory/etc/cups-files.conf" <<FILES
ServerRoot $directory/etc
CacheDir $directory/cache
StateDir $directory/run
RequestRoot $directory/spool
TempDir $directory/spool/tmp
AccessLog $directory/log/access
ErrorLog $directory/log/error
PageLog $directory/log/page
DataDir /usr/share/cups
ServerBin $directory/bin
DocumentRoot /usr/share/cups/doc-root
ServerKeychain $directory/etc/ssl
Printcap
SyncOnClose No
User $user
Group $group
SystemGroup $admins
Sandboxing relaxed
FILES
cat >"$directory/etc/cupsd.conf" <<SERVER
LogLevel info
MaxLogSize 0
Listen $directory/run/cups.sock
Browsing Off
WebInterface No
DefaultAuthType None
PreserveJobHistory Yes
PreserveJobFiles No
MaxJobs 0
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order allow,deny
    Allow all
  </Limit>
</Policy>
SERVER

PATH=$PATH:/usr/sbin
cupsd -f -c "$directory/etc/cupsd.conf" -s "$directory/etc/cups-files.conf" >/dev/null 2>&1 &
server=$!
trap 'kill $server 2>/dev/null; wait $server' EXIT
trap 'exit 0' TERM INT HUP

CUPS_SERVER=$directory/run/cups.sock
export CUPS_SERVER
tries=0
until LC_ALL=C lpstat -r 2>/dev/null | grep -q ' is running'; do
  tries=$((tries + 1))
  [ $tries -lt 200 ] || exit 1
  sleep 0.05
done
default=
for queue; do
  lpadmin -p "$queue" -E -v "capture:$directory/out" -m raw 2>/dev/null
  [ -n "$default" ] || lpadmin -d "$queue" 2>/dev/null
  default=$queue
done
echo pronto
wait $server
