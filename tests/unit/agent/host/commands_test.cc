#include "agent/host/commands.h"

#include <vector>

#include "agent/host/places.h"

namespace zendrix::agent {
namespace {

TEST(NormalPath, HasNoStepsAndNoDoubledSlashes) {
  EXPECT_EQ(NormalPath("/usr/../tmp/x"), "/tmp/x");
  EXPECT_EQ(NormalPath("//tmp///x/./y/"), "/tmp/x/y");
  EXPECT_EQ(NormalPath("/../.."), "/");
  EXPECT_EQ(NormalPath("/a/..b/...c"), "/a/..b/...c");
  EXPECT_EQ(NormalPath("a/../b"), "a/../b");
  EXPECT_EQ(NormalPath(""), "");
}

TEST(Places, PathIsTemporaryHoweverItIsSpelt) {
  for (const char* path : {"/tmp/x", "//tmp/x", "/./tmp/x", "/usr/../tmp/x", "/var/../var/tmp/x",
                           "/tmp/../usr/bin/x", "/dev//shm/x"}) {
    EXPECT_TRUE(InTemporaryFolder(path)) << path;
  }
  for (const char* path : {"/tmpfiles/x", "/usr/tmp/x", "/tmp", "/home/tmp/x", "tmp/x"}) {
    EXPECT_FALSE(InTemporaryFolder(path)) << path;
  }
}

TEST(Places, PathWithAStepUpIsNoSystemPath) {
  EXPECT_TRUE(InSystemFolder("//usr/bin/x"));
  EXPECT_TRUE(InSystemFolder("/usr/bin/..x"));
  EXPECT_TRUE(InSystemFolder("/usr/bin/x.."));
  EXPECT_FALSE(InSystemFolder("/usr/../home/x"));
  EXPECT_FALSE(InSystemFolder("/usr/bin/.."));
}

// "[" is a program of every computer, and was told as a hard alert.
TEST(KernelThreads, OnlyTheirVeryNamesAreTheirs) {
  for (const char* name : {"[kworker/0:1]", "kworker/0:9", "kworker", "ksoftirqd/3", "kthreadd",
                           "migration/0", "rcu_sched", "rcu_tasks_kthre", "kswapd0", "irq/9-acpi",
                           "jbd2/sda1-8", "kcompactd0", "khugepaged", "cpuhp/0", "scsi_eh_1", "kauditd"}) {
    EXPECT_TRUE(LooksLikeKernelThread(name)) << name;
  }
  for (const char* name :
       {"[",         "[[",         "[1",           "kworkers",      "kworker-app", "ksoftirq",
        "kthreadds", "migrations", "migration/",   "rcu_viewer",    "kswapd-top",  "irqbalance",
        "irq",       "jbd2",       "kcompactdisk", "khugepagedump", "cpuhp",       "scsi_eh",
        "",          "bash"}) {
    EXPECT_FALSE(LooksLikeKernelThread(name)) << name;
  }
}

TEST(ReadCommand, NamesTheProgram) {
  EXPECT_EQ(ReadCommand("/usr/bin/x --y").program, "/usr/bin/x");
  EXPECT_EQ(ReadCommand("\"/opt/my app/x\" -z").program, "/opt/my app/x");
  EXPECT_EQ(ReadCommand("\"/opt/open").program, "/opt/open");
  EXPECT_EQ(ReadCommand("  ").program, "");
  EXPECT_EQ(ReadCommand("firefox %u").program, "firefox");
}

TEST(ReadCommand, LooksBehindWhatOnlyStartsAnother) {
  for (const char* command :
       {"env A=1 -i /home/a/x", "/usr/bin/env /home/a/x", "nohup /home/a/x", "setsid -f /home/a/x --y",
        "sh -c /home/a/x", "/bin/bash -lc 'exec /home/a/x --y'",
        "nice -n 5 env B=2 sh -c \"nohup /home/a/x\"", "/usr/bin/python3.11 -u /home/a/x",
        "/lib64/ld-linux-x86-64.so.2 /home/a/x", "timeout 5 /home/a/x", "perl /home/a/x"}) {
    const Command read = ReadCommand(command);
    EXPECT_EQ(read.program, "/home/a/x") << command;
    EXPECT_TRUE(read.is_outside) << command;
    EXPECT_EQ(read.temporary, "") << command;
  }
  EXPECT_EQ(ReadCommand("/usr/bin/env").program, "");
  EXPECT_EQ(ReadCommand("python3 -m http.server").program, "python3");
  EXPECT_FALSE(ReadCommand("/bin/sh /etc/init.d/x start").is_outside);
}

// Each of these started a program of /tmp and bore no hard rule.
TEST(ReadCommand, ProgramInATemporaryFolderIsFoundHoweverItIsStarted) {
  for (const char* command :
       {"/tmp/evil", "//tmp/evil", "/usr/../tmp/evil", "sh -c /tmp/evil", "sh -c \"sleep 5;/tmp/evil&\"",
        "nohup /tmp/evil", "setsid /tmp/evil", "env -i A=1 /tmp/evil", "python3 /tmp/evil",
        "/lib64/ld-linux-x86-64.so.2 /tmp/evil", "env LD_PRELOAD=/tmp/evil /usr/bin/x",
        "/usr/bin/x --gpu-launcher=/tmp/evil", "sh -c '\"\"/t\"m\"p/evil'", "/\\x74mp/evil", "/\\164mp/evil",
        "%T/evil", "sh -c 'cat </tmp/evil'"}) {
    EXPECT_EQ(ReadCommand(command).temporary, "/tmp/evil") << command;
  }
  EXPECT_NE(ReadCommand("sh -c 'cd /tmp && ./evil'").temporary, "");
  for (const char* command : {"/usr/bin/x", "/usr/bin/x --folder=/tmp", "xdg-user-dirs-update",
                              "/usr/bin/x https://h/tmp/y", "sh -c 'echo tmp/x'"}) {
    EXPECT_EQ(ReadCommand(command).temporary, "") << command;
  }
}

TEST(ReadCommand, HiddenProgramIsFoundHoweverItIsStarted) {
  for (const char* command :
       {"/home/a/.x/evil", "sh -c /home/a/.x/evil", "nohup /home/a/.x/evil", "python3 /home/a/.x/evil",
        "env /home/a//.x/./evil", "/usr/bin/x /home/a/.x/evil"}) {
    EXPECT_EQ(ReadCommand(command).hidden, "/home/a/.x/evil") << command;
  }
  EXPECT_NE(ReadCommand("sh -c '$HOME/.config/evil'").hidden, "");
  EXPECT_NE(ReadCommand("/home/a/.config/evil").hidden, "");
  EXPECT_EQ(ReadCommand("/usr/bin/x --settings /home/a/.config/x").hidden, "")
      << "settings of an ordinary one";
  EXPECT_EQ(ReadCommand("/usr/bin/x ../y ./z").hidden, "");
}

TEST(ReadCommand, CommandOfAnyLengthIsRead) {
  std::string command;
  for (int i = 0; i < 30000; ++i) command += "sh -c ";
  EXPECT_EQ(ReadCommand(command + "/tmp/evil").temporary, "/tmp/evil");
}

}  // namespace
}  // namespace zendrix::agent
