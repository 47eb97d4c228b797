// The drop-ins that zenqayctl systemd writes.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "control/commands.h"
#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

/// A job file in a place of its own, and an ERP's home in a directory of the test's.
struct Units {
  TempDirectory directory;
  Text path = "/srv/zenqay/zenqay.toml";
  Text database = "connection = \"Provider=SQLite;Data Source=data/service.db\"\n";
  Text components = "<COMPONENTS/>";
  Text home;  // where it is not the directory
  Text batch;
  Text said;

  Text Plain(const Text& text) const { return Replaced(text, directory.path().string(), "HOME"); }

  /// What the drop-in of the job's unit holds, HOME for the directory.
  Text DropIn(const Text& job = "nightly", bool json = false) {
    directory.Write("Components.xml", components);
    const Text erp = home.empty() ? directory.path().string() : home;
    const JobFile file = ReadJobFileText(
        "[database.service]\n" + database + "[erp.main]\nhome = \"" + erp + "\"\ngeneration = 3\n[job.\"" + job +
            "\"]\ndatabase = \"service\"\nerp = \"main\"\nlogs = \"/var/log/zenqay\"\n" + batch,
        path);
    std::ostringstream out;
    std::ostringstream err;
    Environment environment;
    Surroundings surroundings = {.environment = environment, .out = out, .err = err};
    EXPECT_EQ(WriteDropIns(file, job, directory.path().string() + "/units", json, surroundings), 0);
    said = Plain(out.str()) + err.str();
    return Plain(directory.Read("units/zenqay@" + job + ".service.d/zenqay.conf"));
  }
};

TEST(SystemdCommand, WritesTheSameForTheJobAndForThePageAndSaysWhere) {
  Units units;

  const Text dropIn = units.DropIn();

  EXPECT_EQ(units.Plain(units.directory.Read("units/zenqay-page.service.d/zenqay-nightly.conf")), dropIn);
  EXPECT_EQ(units.said,
            "Made HOME/units/zenqay@nightly.service.d/zenqay.conf\n"
            "and HOME/units/zenqay-page.service.d/zenqay-nightly.conf. Next:\n"
            "\n"
            "    systemctl daemon-reload\n"
            "    systemctl start zenqay@nightly.service          runs the job\n"
            "    systemctl enable --now zenqay@nightly.timer     runs it every night\n");
  units.DropIn("nightly", true);
  EXPECT_EQ(units.said,
            "{\"files\":[\"HOME/units/zenqay@nightly.service.d/zenqay.conf\","
            "\"HOME/units/zenqay-page.service.d/zenqay-nightly.conf\"]}\n");
}

TEST(SystemdCommand, LetsWhatTheJobFileAndItsComponentsNameBeWritten) {
  Units units;
  units.components =
      "<COMPONENTS><HOST prefix=\"Kv\" kind=\"files\" directory=\"/srv/erp/exports\"/>"
      "<HOST prefix=\"Z\" kind=\"file\" file=\"/srv/status/zenqay.jsonl\"/>"
      "<TRACE file=\"/srv/status/trace-%p.jsonl\"/></COMPONENTS>";

  EXPECT_EQ(units.DropIn(),
            "# Made by \"zenqayctl systemd nightly\" from /srv/zenqay/zenqay.toml.\n"
            "[Unit]\n"
            "RequiresMountsFor=/srv/zenqay/data /srv/status /var/log/zenqay /srv/zenqay HOME /srv/erp/exports\n"
            "\n"
            "[Service]\n"
            "Environment=\"ZENQAY_FILE=/srv/zenqay/zenqay.toml\"\n"
            "ReadWritePaths=/srv/zenqay/data /srv/status /var/log/zenqay\n"
            "BindReadOnlyPaths=HOME\n");
}

TEST(SystemdCommand, LetsWhatTasksHaveLeftBeCollected) {
  Units units;
  units.batch = "[batch]\nshared = \"/nfs/zenqay\"\n";

  EXPECT_EQ(units.DropIn(),
            "# Made by \"zenqayctl systemd nightly\" from /srv/zenqay/zenqay.toml.\n"
            "[Unit]\n"
            "RequiresMountsFor=/srv/zenqay/data /var/log/zenqay /nfs/zenqay /srv/zenqay HOME\n"
            "\n"
            "[Service]\n"
            "Environment=\"ZENQAY_FILE=/srv/zenqay/zenqay.toml\"\n"
            "ReadWritePaths=/srv/zenqay/data /var/log/zenqay /nfs/zenqay\n"
            "BindReadOnlyPaths=HOME\n");
}

TEST(SystemdCommand, LoadsTheCredentialAndFindsTheSocketsOfAServer) {
  Units units;
  units.path = "/etc/zenqay/zenqay.toml";
  units.database =
      "connection = \"Driver=PostgreSQL Unicode;Server=/tmp/sockets;UID=zenqay;PWD={password}\"\n"
      "password = { credential = \"service\" }\n";

  EXPECT_EQ(units.DropIn(),
            "# Made by \"zenqayctl systemd nightly\" from /etc/zenqay/zenqay.toml.\n"
            "[Unit]\n"
            "RequiresMountsFor=/var/log/zenqay /etc/zenqay /tmp/sockets HOME\n"
            "\n"
            "[Service]\n"
            "LoadCredential=service:/etc/zenqay/credentials/service\n"
            "ReadWritePaths=/var/log/zenqay\n"
            "BindReadOnlyPaths=/tmp/sockets HOME\n");
}

TEST(SystemdCommand, BindsInWhatStandsInAHomeAndLetsJavaWriteCode) {
  Units units;
  units.path = "/home/ann/my 100% jobs/zenqay.toml";
  units.components =
      "<COMPONENTS><HOST prefix=\"java:\" kind=\"jvm\" classpath=\"/opt/adapter/*.jar:/opt/erp.jar\"/></COMPONENTS>";

  EXPECT_EQ(units.DropIn(),
            "# Made by \"zenqayctl systemd nightly\" from /home/ann/my 100% jobs/zenqay.toml.\n"
            "[Unit]\n"
            "RequiresMountsFor=\"/home/ann/my 100%% jobs/data\" /var/log/zenqay \"/home/ann/my 100%% jobs\" HOME"
            " /opt/adapter /opt\n"
            "\n"
            "[Service]\n"
            "Environment=\"ZENQAY_FILE=/home/ann/my 100%% jobs/zenqay.toml\"\n"
            "ReadWritePaths=/var/log/zenqay\n"
            "ProtectHome=tmpfs\n"
            "BindPaths=\"/home/ann/my 100%% jobs/data\"\n"
            "BindReadOnlyPaths=\"/home/ann/my 100%% jobs\" HOME\n"
            "MemoryDenyWriteExecute=no\n");
}

TEST(SystemdCommand, FindsThePasswordInAFileOfItsOwn) {
  Units units;
  units.database =
      "connection = \"Driver=PostgreSQL Unicode;Server=dbhost;UID=zenqay;PWD={password}\"\n"
      "password = { file = \"/root/password\" }\n";

  EXPECT_EQ(units.DropIn(),
            "# Made by \"zenqayctl systemd nightly\" from /srv/zenqay/zenqay.toml.\n"
            "[Unit]\n"
            "RequiresMountsFor=/var/log/zenqay /srv/zenqay /root/password HOME\n"
            "\n"
            "[Service]\n"
            "Environment=\"ZENQAY_FILE=/srv/zenqay/zenqay.toml\"\n"
            "ReadWritePaths=/var/log/zenqay\n"
            "ProtectHome=tmpfs\n"
            "BindReadOnlyPaths=/root/password HOME\n");
}

TEST(SystemdCommand, RefusesWhatNoUnitCanName) {
  Units units;

  EXPECT_EQ(Raised([&] { units.DropIn("each night"); }),
            "2 zenqayctl: no unit of systemd can be named after the job \"each night\": use letters, digits, \"-\", "
            "\"_\", \".\" and \":\"");
  units.path = "/srv/a:b/zenqay.toml";
  EXPECT_EQ(Raised([&] { units.DropIn(); }), "2 zenqayctl: a unit of systemd cannot name the path /srv/a:b/data");
  units.path = "/srv/zenqay/zenqay.toml";
  units.home = units.directory.path().string() + "/none";
  EXPECT_EQ(units.Plain(Raised([&] { units.DropIn(); })),
            "2 zenqayctl: zenqay.toml:4:8: HOME/none/Components.xml: the file is missing or cannot be read");
  EXPECT_FALSE(std::filesystem::exists(units.directory.path() / "units"));
}

}  // namespace
}  // namespace zenqay
