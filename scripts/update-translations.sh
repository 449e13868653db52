#!/usr/bin/env bash
# Refreshes the Qt Linguist sources in translations/ from every tr() text of
# the host, the plug-in and the viewer: new texts come in unfinished (fill them
# in with Qt Linguist or an editor), texts gone from the code are dropped.
#   scripts/update-translations.sh               update translations/*.ts in place
#   scripts/update-translations.sh --check DIR   update copies in DIR instead and
#                                                fail when any text is untranslated
# LUPDATE names the lupdate to use (default: the one on the PATH).
set -euo pipefail
cd "$(dirname "$0")/.."
LUPDATE=${LUPDATE:-lupdate}
sources=(host plugin panel shapes manipulators app)

ts_dir=translations
if [ "${1:-}" = "--check" ]; then
    ts_dir=${2:?--check needs a folder for the copies}
    mkdir -p "$ts_dir"
    rm -f "$ts_dir"/*.ts
    cp translations/*.ts "$ts_dir"/
fi

# lupdate's complaints about tr() calls it cannot place: those texts would
# never reach a translation, so the check fails on them too.
unplaced=$("$LUPDATE" -silent -no-obsolete -locations none "${sources[@]}" -ts "$ts_dir"/*.ts 2>&1 \
           | grep 'cannot be called without context' || true)
if [ -n "$unplaced" ]; then
    echo "tr() calls lupdate cannot give a context (use QCoreApplication::translate(\"Class\", ...)):"
    echo "$unplaced"
    [ "${1:-}" = "--check" ] && exit 1
fi

# Every text without a finished translation, as "file: context: text".
missing=$(python3 - "$ts_dir"/*.ts <<'PY'
import sys, xml.etree.ElementTree as ET
for path in sys.argv[1:]:
    for context in ET.parse(path).getroot().iter('context'):
        name = context.findtext('name')
        for message in context.iter('message'):
            translation = message.find('translation')
            if translation is None or translation.get('type') == 'unfinished' or not (translation.text or '').strip():
                print(f"{path.split('/')[-1]}: {name}: {message.findtext('source')!r}")
PY
)
if [ -n "$missing" ]; then
    echo "Texts without a translation:"
    echo "$missing"
    [ "${1:-}" = "--check" ] && exit 1
fi
exit 0
