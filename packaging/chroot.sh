# Sourced by the checks of what is shipped: a bare Debian, made for one check and removed afterwards. They set $work, a
# folder of their own.
# shellcheck shell=bash disable=SC2154 # $work

readonly kSkipped=77 # this project's SKIP_RETURN_CODE for ctest

skip() {
    echo "Skipped: $*" >&2
    exit $kSkipped
}

# Where this machine's apt gets this machine's release from.
apt_sources() {
    local codename=$1 file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources; do
        [ -f "$file" ] && grep -q "$codename" "$file" && cat "$file" && return 0
    done
    return 1
}

# make_chroot FOLDER PACKAGE...: installs this machine's release of Debian and the packages, without what they
# recommend. apt keeps working in there. If this cannot be done, the script ends as skipped.
make_chroot() {
    local folder=$1 codename packages
    shift
    packages=$(IFS=,; echo "$*")
    [ "$(id -u)" -eq 0 ] || skip "only root can make a chroot"
    unshare --mount --pid --fork true 2>/dev/null || skip "mounting is not allowed here"
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
    apt_sources "$codename" >"$folder.sources" || skip "apt's sources of this release were not found"
    apt-config dump | grep -E '^Acquire::(Check-|Proxy|https?::|Retries)' >"$folder.apt" || true
    echo "Making a chroot ($folder.log)" >&2
    unshare --mount mmdebstrap --mode=root --variant=minbase --skip=cleanup/apt/lists --aptopt="$folder.apt" \
        --aptopt='APT::Install-Recommends "false"' --include="$packages" "$codename" "$folder" - \
        <"$folder.sources" >"$folder.log" 2>&1 || { tail -n 5 "$folder.log" >&2; skip "mmdebstrap failed"; }
    cp /etc/hosts "$folder/etc/hosts"
    mkdir -p "$folder/mnt/project" "$folder/mnt/scratch"
    chmod 755 "$work" # for apt and the user in the chroot, both ordinary users
    chroot "$folder" useradd --create-home tester
}

# in_chroot FOLDER COMMAND...: as root. The project is in /mnt/project, the folder $work in /mnt/scratch, and /tmp is
# empty. Whatever is mounted or started in there is gone when the command ends.
in_chroot() {
    local folder=$1
    shift
    # shellcheck disable=SC2016 # the inner shell's arguments
    unshare --mount --pid --fork --kill-child sh -euc '
        root=$1 project=$2 work=$3
        shift 3
        mount -t proc proc "$root/proc"
        mount --rbind /dev "$root/dev"
        mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
        mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
        mount --bind -o ro "$project" "$root/mnt/project"
        mount --bind "$work" "$root/mnt/scratch"
        cd /
        exec chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
    ' sh "$folder" "$PWD" "$work" "$@"
}

# try_program FOLDER PROGRAM [ARGUMENT...]: packaging/try-program in the chroot, as an ordinary user.
try_program() {
    local folder=$1
    shift
    in_chroot "$folder" setpriv --reuid=tester --regid=tester --clear-groups \
        env HOME=/home/tester PYTHONDONTWRITEBYTECODE=1 /mnt/project/tests/support/private-desktop --window-manager -- \
        /mnt/project/packaging/try-program "$@"
}
