#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Corvex developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Signs a release archive with the Ed25519 private key and writes its update-feed item.
#
#   scripts/release-sign.sh ARCHIVE --key PRIVATE_KEY.pem --url-base https://ostrel.com/corvex/ \
#       [--notes NOTES.html | --notes-link URL] [--item ITEM.xml]
#
# Writes ARCHIVE.sig (the base64 signature, which `corvex update verify ARCHIVE` reads) and the <item> for
# the feed (to --item, or stdout). The versions come from the archive's Corvex.app/Contents/Info.plist.
# A new key pair:   openssl genpkey -algorithm ed25519 -out PRIVATE_KEY.pem
# Its public key for Info.plist's SUPublicEDKey:
#                   openssl pkey -in PRIVATE_KEY.pem -pubout -outform DER | tail -c 32 | base64
set -euo pipefail

die() { echo "release-sign: $*" >&2; exit 1; }

archive="" key="" url_base="" notes="" notes_link="" item_out=""
while [ $# -gt 0 ]; do
  case "$1" in
    --key) key="${2:-}"; shift 2 ;;
    --url-base) url_base="${2:-}"; shift 2 ;;
    --notes) notes="${2:-}"; shift 2 ;;
    --notes-link) notes_link="${2:-}"; shift 2 ;;
    --item) item_out="${2:-}"; shift 2 ;;
    -h|--help) sed -n '4,15p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    -*) die "unknown option $1" ;;
    *) [ -z "$archive" ] || die "more than one archive given"; archive="$1"; shift ;;
  esac
done
[ -n "$archive" ] || die "no archive given (try --help)"
[ -f "$archive" ] || die "no such archive: $archive"
[ -n "$key" ] || die "no private key given (--key)"
[ -f "$key" ] || die "no such key file: $key"
[ -n "$url_base" ] || die "no download URL base given (--url-base)"
[ -z "$notes" ] || [ -f "$notes" ] || die "no such release notes file: $notes"
command -v openssl >/dev/null || die "openssl is not installed"

# The versions, from the bundle's Info.plist inside the archive.
info=$(tar -xOf "$archive" Corvex.app/Contents/Info.plist 2>/dev/null) ||
  die "$archive holds no Corvex.app/Contents/Info.plist"
plist_value() {
  printf '%s\n' "$info" | sed -n "/<key>$1<\/key>/{n;s/.*<string>\(.*\)<\/string>.*/\1/p;q}"
}
version=$(plist_value CFBundleVersion)
short_version=$(plist_value CFBundleShortVersionString)
[ -n "$version" ] || die "the archive's Info.plist has no CFBundleVersion"
[ -n "$short_version" ] || short_version="$version"

# Sign, then check the signature with the key's public half before publishing it.
signature=$(openssl pkeyutl -sign -rawin -inkey "$key" -in "$archive" | base64 -w0) ||
  die "openssl could not sign with $key (is it an Ed25519 private key?)"
[ ${#signature} -eq 88 ] || die "openssl gave no Ed25519 signature"
tmp=$(mktemp -d); trap 'rm -rf "$tmp"' EXIT
openssl pkey -in "$key" -pubout -out "$tmp/public.pem" 2>/dev/null || die "cannot derive the public key"
printf '%s' "$signature" | base64 -d > "$tmp/sig"
openssl pkeyutl -verify -rawin -pubin -inkey "$tmp/public.pem" -in "$archive" -sigfile "$tmp/sig" >/dev/null ||
  die "the new signature does not verify"
public_key=$(openssl pkey -in "$key" -pubout -outform DER | tail -c 32 | base64 -w0)
printf '%s\n' "$signature" > "$archive.sig"

name=$(basename "$archive")
length=$(stat -c %s "$archive")
case "$name" in
  *.tar.xz) type="application/x-xz" ;;
  *.tar.gz|*.tgz) type="application/gzip" ;;
  *.zip) type="application/zip" ;;
  *) type="application/octet-stream" ;;
esac
xml_escape() { sed -e 's/&/\&amp;/g' -e 's/</\&lt;/g' -e 's/>/\&gt;/g' -e 's/"/\&quot;/g'; }
url="${url_base%/}/$(printf '%s' "$name" | sed 's/ /%20/g')"

write_item() {
  echo "    <item>"
  echo "      <title>Corvex $(printf '%s' "$short_version" | xml_escape)</title>"
  echo "      <pubDate>$(LC_ALL=C date -u '+%a, %d %b %Y %H:%M:%S +0000')</pubDate>"
  if [ -n "$notes" ]; then
    # CDATA cannot hold "]]>": split it where it occurs.
    echo "      <description><![CDATA[$(sed 's/]]>/]]]]><![CDATA[>/g' "$notes")]]></description>"
  elif [ -n "$notes_link" ]; then
    echo "      <corvex:releaseNotesLink>$(printf '%s' "$notes_link" | xml_escape)</corvex:releaseNotesLink>"
  fi
  echo "      <enclosure url=\"$(printf '%s' "$url" | xml_escape)\" length=\"$length\" type=\"$type\""
  echo "                 corvex:version=\"$(printf '%s' "$version" | xml_escape)\" corvex:shortVersionString=\"$(printf '%s' "$short_version" | xml_escape)\""
  echo "                 corvex:edSignature=\"$signature\"/>"
  echo "    </item>"
}
if [ -n "$item_out" ]; then write_item > "$item_out"; else write_item; fi

echo "release-sign: signed $name (version $version, $length bytes) for the public key $public_key" >&2
