#include "control/credentials.h"

#include <gtest/gtest.h>

#include "doubles/outcome.h"
#include "doubles/temp_directory.h"

namespace zenqay {
namespace {

namespace fs = std::filesystem;

/// A directory with a job file beside which credentials can stand.
class ReadPasswordFrom : public testing::Test {
 protected:
  ReadPasswordFrom() {
    file.directory = directory.path().string();
    fs::create_directory(directory.path() / "credentials");
    Close(directory.path() / "credentials");
  }

  static void Close(const fs::path& path) { fs::permissions(path, fs::perms::owner_all); }
  static void Open(const fs::path& path) {
    fs::permissions(path, fs::perms::owner_all | fs::perms::others_read | fs::perms::others_exec);
  }

  Text Outcome(PasswordSource::Kind kind, const Text& name) {
    const PasswordSource source = {kind, name, "zenqay.toml:6:12"};
    return Replaced(OutcomeOf([&] { return ReadPassword(file, source, environment); }), file.directory, "HOME");
  }

  TempDirectory directory;
  JobFile file;
  Environment environment;
};

TEST_F(ReadPasswordFrom, TheEnvironment) {
  environment.variables = {{"SERVICE_PASSWORD", "ge;heim "}};

  EXPECT_EQ(Outcome(PasswordSource::Kind::Environment, "SERVICE_PASSWORD"), "ge;heim ");
  EXPECT_EQ(Outcome(PasswordSource::Kind::Environment, "OTHER"),
            "2 zenqayctl: zenqay.toml:6:12: the environment has no OTHER, where the password is to be");
}

TEST_F(ReadPasswordFrom, TheCredentialsBesideTheJobFileWithoutTheLineEnd) {
  directory.Write("credentials/service", " geheim\r\n");

  EXPECT_EQ(Outcome(PasswordSource::Kind::Credential, "service"), " geheim");
}

TEST_F(ReadPasswordFrom, TheDirectoryOfTheSystemsCredentialsFirst) {
  const TempDirectory system;
  system.Write("service", "other");
  Open(system.path());
  directory.Write("credentials/service", "geheim");
  environment.variables = {{"CREDENTIALS_DIRECTORY", system.path().string()}};

  EXPECT_EQ(Outcome(PasswordSource::Kind::Credential, "service"), "other");
}

TEST_F(ReadPasswordFrom, AFileThatOthersCannotRead) {
  directory.Write("password", "geheim\n");
  Open(directory.path());
  Close(directory.path() / "password");

  EXPECT_EQ(Outcome(PasswordSource::Kind::File, directory.path() / "password"), "geheim");
  Open(directory.path() / "password");
  EXPECT_EQ(Outcome(PasswordSource::Kind::File, directory.path() / "password"),
            "2 zenqayctl: zenqay.toml:6:12: everybody can read the password's file HOME/password: chmod o= "
            "HOME/password");
  Close(directory.path());
  EXPECT_EQ(Outcome(PasswordSource::Kind::File, directory.path() / "password"), "geheim");
}

TEST_F(ReadPasswordFrom, NothingThatIsNoLineOfText) {
  directory.Write("credentials/empty", "\n");
  directory.Write("credentials/two", "a\nb\n");

  EXPECT_EQ(Outcome(PasswordSource::Kind::Credential, "none"),
            "2 zenqayctl: zenqay.toml:6:12: the password's file HOME/credentials/none is missing or cannot be read");
  EXPECT_EQ(Outcome(PasswordSource::Kind::Credential, "empty"), "2 zenqayctl: zenqay.toml:6:12: the password is empty");
  EXPECT_EQ(Outcome(PasswordSource::Kind::Credential, "two"),
            "2 zenqayctl: zenqay.toml:6:12: the password is not one line of text");
}

}  // namespace
}  // namespace zenqay
