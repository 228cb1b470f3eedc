# Sourced by run. Stage one: Debian's kernel, a shell and the Agent, nothing else.
stage_kernel() {
  local folder=$work/stage_kernel program
  rm -rf "$folder"
  mkdir -p "$folder/root"/{bin,proc,sys,dev,opt,root}
  cp /bin/busybox "$folder/root/bin/"
  for program in zendrix-agent zendrix-inspect; do
    add_program "$folder/root" "$build/bin/$program" "/usr/bin/$program"
  done
  add_program "$folder/root" "$build/bin/zendrix-bench-nothing" /usr/bin/nothing
  add_program "$folder/root" "$(command -v setpriv)" /usr/bin/setpriv
  cp "$(kernel_module "$work" dummy)" "$folder/root/"
  cp tests/vm/kernel_init "$folder/root/init"
  pack "$folder/root" "$folder/initramfs"
  run_machine 600 "$(kernel_of "$work")" "$folder/initramfs" "" "$folder" ||
    { tail -n 30 "$folder/console" >&2; return 1; }
  tests/vm/judge_kernel.py "$folder/out" || { cat "$folder/console" >&2; return 1; }
}
