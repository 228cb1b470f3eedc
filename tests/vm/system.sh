# Sourced by run. Stage two: Debian with its service manager, bus and polkit, the services as a package would lay them.
system_packages="systemd,systemd-sysv,dbus,polkitd,libpam-systemd,util-linux,expect,libssl3,libsqlite3-0,libbpf1,libsdbus-c++1,libcurl4"
# In this order: each needs those in front of it.
disk_modules="virtio_ring virtio virtio_pci_legacy_dev virtio_pci_modern_dev virtio_pci virtio_blk crc16 crc32c_generic mbcache jbd2 ext4"

# The Debian of the machine, in the folder that it prints; made once for a list of packages.
debian_root() {
  local root
  root=$work/debian-$(echo "$system_packages" | sha256sum | cut -c 1-12)
  if [ ! -e "$root/complete" ]; then
    rm -rf "$root"
    mkdir -p "$root/tree"
    mmdebstrap --quiet --variant=minbase --include="$system_packages" --dpkgopt='path-exclude=/usr/share/doc/*' \
      --dpkgopt='path-exclude=/usr/share/man/*' --dpkgopt='path-exclude=/usr/share/locale/*' \
      bookworm "$root/root.tar" >"$root/log" 2>&1 || { tail -n 5 "$root/log" >&2; return 1; }
    tar -xf "$root/root.tar" -C "$root/tree" --exclude=./dev/'*' --exclude='./var/cache/apt/*' --exclude='./var/lib/apt/lists/*'
    rm "$root/root.tar"
    touch "$root/complete"
  fi
  echo "$root/tree"
}

# install_product TREE: the packages, as their own scripts lay them. The console's needs are not in the machine, which has no
# screen: of its package only the inspector and its library are taken.
install_product() {
  local tree=$1 unpacked=$1/unpacked
  mkdir "$tree/packages"
  cp "$packages"/zendrix-agent_*.deb "$packages"/zendrix-common_*.deb "$tree/packages/"
  chroot "$tree" sh -c "dpkg --install /packages/*.deb" >"$work/install.log" 2>&1 ||
    { cat "$work/install.log" >&2; return 1; }
  dpkg -x "$packages"/zendrix_*.deb "$unpacked"
  cp -a "$unpacked"/usr/bin/zendrix-inspect "$tree/usr/bin/"
  cp -a "$unpacked"/usr/lib/. "$tree/usr/lib/"
  rm -r "$unpacked" "$tree/packages"
}

# lay_product TREE: programs, units, users and folders where a package lays them.
lay_product() {
  local tree=$1 program
  for program in zendrix-agent zendrix-inspect; do install -D "$build/bin/$program" "$tree/usr/bin/$program"; done
  for program in zendrix-act zendrix-mail; do
    [ ! -x "$build/bin/$program" ] || install -D "$build/bin/$program" "$tree/usr/libexec/zendrix/$program"
  done
  # The library that quarantines stands beside the console's programs.
  install -D -m 644 -t "$tree/usr/bin" "$build"/bin/libKorvessaIntermediateTypes.so
  install -D -m 644 -t "$tree/lib/systemd/system" packaging/systemd/*
  install -D -m 644 -t "$tree/usr/lib/sysusers.d" packaging/sysusers.d/*
  install -D -m 644 -t "$tree/usr/lib/tmpfiles.d" packaging/tmpfiles.d/*
  install -D -m 644 -t "$tree/usr/share/dbus-1/system.d" packaging/dbus/*.conf
  install -D -m 644 -t "$tree/usr/share/dbus-1/system-services" packaging/dbus/*.service
  install -D -m 644 -t "$tree/usr/share/polkit-1/actions" packaging/polkit/*.policy
}

stage_system() {
  local folder=$work/stage_system module base
  [ "$(id -u)" = 0 ] || skip "a Debian can be made by root only"
  need_packages mmdebstrap e2fsprogs || skip "packages cannot be installed (mmdebstrap, e2fsprogs)"
  base=$(debian_root) || skip "Debian's packages cannot be fetched"
  rm -rf "$folder"
  mkdir -p "$folder/root"/{bin,proc,dev,modules} "$folder/disk"
  cp /bin/busybox "$folder/root/bin/"
  cp tests/vm/system_init "$folder/root/init"
  for module in $disk_modules; do cp "$(kernel_module "$work" "$module")" "$folder/root/modules/"; done
  echo "$disk_modules" >"$folder/root/modules/order"
  pack "$folder/root" "$folder/initramfs"

  cp -a "$base/." "$folder/disk"
  if [ -n "$packages" ]; then
    install_product "$folder/disk" || return 1
  else
    lay_product "$folder/disk"
    # As a package's own script does: the Agent starts with the computer.
    mkdir -p "$folder/disk/etc/systemd/system/multi-user.target.wants"
    ln -s /lib/systemd/system/zendrix.service "$folder/disk/etc/systemd/system/multi-user.target.wants/"
  fi
  install -D -t "$folder/disk/trial" tests/vm/system_trial tests/vm/sandbox_probe tests/vm/ask_expect tests/vm/alert_of tests/vm/{acting,mail}_trial tests/vm/mail_server \
    "$build/bin/zendrix-vm-service" "$build/bin/zendrix-bench-nothing"
  install -D -m 644 tests/vm/trial.service "$folder/disk/etc/systemd/system/trial.service"
  mke2fs -q -F -t ext4 -O ^has_journal -d "$folder/disk" "$folder/disk.ext4" 500M >/dev/null
  rm -rf "$folder/disk"
  run_machine 1200 "$(kernel_of "$work")" "$folder/initramfs" \
    "systemd.wants=trial.service systemd.mask=serial-getty@ttyS0.service systemd.show_status=no systemd.firstboot=off" "$folder" \
    -drive "file=$folder/disk.ext4,format=raw,if=virtio,snapshot=on" || { tail -n 40 "$folder/console" >&2; return 1; }
  rm "$folder/disk.ext4"
  tests/vm/judge_system.py "$folder/out" || { cat "$folder/console" >&2; return 1; }
}
