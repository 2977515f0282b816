#!/usr/bin/env bash
# Installs the build into a fresh prefix; a Java program compiled against the installed
# zorvel.jar runs with the installed libzorjava and writes its plot.
# Usage: install_test.sh BUILD WORK JAVAC JAVA
set -eu
build=$1 work=$2 javac=$3 java=$4
rm -rf "$work" && mkdir -p "$work"
cmake --install "$build" --prefix "$work/prefix" > "$work/install.log"
jar=$work/prefix/share/java/zorvel.jar
lib=$(ls -d "$work"/prefix/lib*/libzorjava.so)
for f in "$jar" "$lib"; do
  [ -e "$f" ] || { echo "missing after install: $f"; exit 1; }
done
cat > "$work/Consumer.java" <<'J'
import static zorvel.Zorvel.*;

public class Consumer {
  public static void main(String[] args) {
    metafl("GKSL");
    setfil("consumer.met");
    zorini();
    zorfin();
    System.out.println("level " + getlev());
  }
}
J
"$javac" -cp "$jar" -d "$work" "$work/Consumer.java"
(cd "$work" && SOURCE_DATE_EPOCH=0 "$java" -Djava.library.path="$(dirname "$lib")" \
   -cp "$jar:." Consumer > run.out)
grep -q "Metafile: consumer.met" "$work/run.out" || { echo "no summary"; cat "$work/run.out"; exit 1; }
grep -q "^level 0$" "$work/run.out" || { echo "wrong level"; exit 1; }
[ -s "$work/consumer.met" ] || { echo "no plot file"; exit 1; }
echo "Java install test passed"
