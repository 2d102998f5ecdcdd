#!/bin/sh
# The program keeps its database and slip settings beside its executable: every user has a copy of his own, which is
# renewed after an update of the package, and data of his own, which is never replaced.
set -eu
folder=${XDG_DATA_HOME:-$HOME/.local/share}/marlevo
mkdir -p "$folder"
program=/usr/lib/marlevo/marlevo
if ! cmp -s "$program" "$folder/marlevo"; then
  cp "$program" "$folder/marlevo.new"
  mv -f "$folder/marlevo.new" "$folder/marlevo"
fi
# F1 looks for the manual beside the program.
for manual in 使用手冊.html 使用手冊; do
  ln -sfn "/usr/share/marlevo/$manual" "$folder/$manual"
done
if [ ! -e "$folder/4star.mdb" ]; then
  cp /usr/share/marlevo/4star.mdb "$folder/4star.mdb.new"
  chmod u+w "$folder/4star.mdb.new"
  mv "$folder/4star.mdb.new" "$folder/4star.mdb"
fi
exec "$folder/marlevo" "$@"
