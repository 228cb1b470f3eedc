# Sourced by run: Debian's own kernel in a virtual machine without hardware help, so that it runs wherever qemu
# does. A machine is made of one file system in memory (initramfs), speaks on its first serial line, and hands
# back what it made as a compressed archive on its second. Nothing is installed on this computer but qemu's package.

# What a machine needs of this computer.
machine_packages="qemu-system-x86 busybox-static cpio"

# fetch_kernel FOLDER: unpacks the newest kernel of Debian 12 into FOLDER/kernel. One that was unpacked is kept:
# without a network the tests go on with it.
fetch_kernel() {
  local folder=$1 package
  [ ! -e "$folder/kernel/complete" ] || return 0
  rm -rf "$folder/kernel"
  mkdir -p "$folder/kernel"
  package=$(apt-cache depends linux-image-amd64 | sed -n 's/^ *Depends: *\(linux-image-[0-9]\)/\1/p' | head -n 1)
  [ -n "$package" ] || { echo "no linux-image-amd64 in this distribution's packages" >&2; return 1; }
  (cd "$folder/kernel" && apt-get -qq download "$package" 2>/dev/null) || return 1
  dpkg -x "$folder"/kernel/*.deb "$folder/kernel"
  rm "$folder"/kernel/*.deb
  touch "$folder/kernel/complete"
}

kernel_of() { echo "$1"/kernel/boot/vmlinuz-*; }

# kernel_module FOLDER NAME: where the unpacked kernel has it.
kernel_module() { find "$1/kernel/lib/modules" -name "$2.ko" | head -n 1; }

# add_program ROOT FILE [PATH]: copies a program with the libraries that it asks for.
add_program() {
  local root=$1 file=$2 path=${3:-$2} library
  install -D "$file" "$root$path"
  # "libz.so.1 => /lib/x86_64-linux-gnu/libz.so.1 (0x...)" and "/lib64/ld-linux-x86-64.so.2 (0x...)"; none for a
  # program without
  for library in $(ldd "$file" 2>/dev/null | sed -n 's/.*=> \(\/[^ ]*\) .*/\1/p; s/^\t\(\/[^ ]*\) .*/\1/p'); do
    [ -e "$root$library" ] || install -D "$library" "$root$library"
  done
}

# pack ROOT FILE: the folder as the kernel takes it. Not compressed: unpacking costs more than it saves here.
pack() { (cd "$1" && find . | cpio --quiet -o -H newc -R 0:0) >"$2"; }

# run_machine SECONDS KERNEL INITRAMFS WORDS FOLDER [QEMU ARGUMENT]...: runs until it powers off. Leaves FOLDER/console
# and what was handed back unpacked in FOLDER/out. False when it did not end within its time.
run_machine() {
  local seconds=$1 kernel=$2 initramfs=$3 words=$4 folder=$5 status=0
  shift 5
  rm -rf "$folder/out" "$folder/back"
  mkdir -p "$folder/out"
  timeout --foreground -k 5 "$seconds" qemu-system-x86_64 -accel tcg -icount shift=1,sleep=off -cpu max -smp 1 -m 768 -nodefaults \
    -no-user-config -display none -no-reboot -kernel "$kernel" -initrd "$initramfs" \
    -append "console=ttyS0 quiet panic=-1 random.trust_cpu=on $words" \
    -serial "file:$folder/console" -serial "file:$folder/back" "$@" </dev/null || status=$?
  [ $status -eq 0 ] || { echo "the virtual machine did not end by itself within $seconds s" >&2; return 1; }
  tar -xzf "$folder/back" -C "$folder/out" || { echo "the virtual machine handed nothing back" >&2; return 1; }
}
