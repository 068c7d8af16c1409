# Readies what a player's check needs: Node.js, the packages that it names and Chromium, whose path goes to CHROMIUM.
# To be sourced by the check.sh of a folder, which has set `here` to that folder.

fail() {
    echo "${here##*/}: $*" >&2
    exit 2
}

command -v node >/dev/null 2>&1 || fail "needs Node.js 20 or newer"
[ "$(node -p 'process.versions.node.split(".")[0]')" -ge 20 ] || fail "needs Node.js 20 or newer, found $(node --version)"

packagesPresent() {
    node --input-type=commonjs -e '
        const wanted = require("./package.json").dependencies;
        for (const name of Object.keys(wanted)) {
            if (require("./node_modules/" + name + "/package.json").version !== wanted[name]) process.exit(1);
        }' 2>/dev/null
}
cd "$here"
if ! packagesPresent; then
    command -v npm >/dev/null 2>&1 || fail "needs npm to install the players"
    npm install --no-audit --no-fund --loglevel=error >&2 || fail "npm could not install the players"
fi
cd "$OLDPWD"

if [ -z "${CHROMIUM:-}" ]; then
    if ! command -v chromium >/dev/null 2>&1; then
        { [ "$(id -u)" -eq 0 ] && command -v apt-get >/dev/null 2>&1; } ||
            fail "needs Chromium: install the package chromium, or name one in CHROMIUM"
        { apt-get update -qq && apt-get install -y -qq --no-install-recommends chromium; } >/dev/null ||
            fail "could not install the package chromium"
    fi
    CHROMIUM=$(command -v chromium)
fi
export CHROMIUM
