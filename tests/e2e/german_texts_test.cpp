// Jobs whose Components.xml asks for the German texts.
#include <gtest/gtest.h>

#include "e2e/program_fixture.h"

namespace zenqay {
namespace {

constexpr const char* kLocationsFile = "Kv40QTMtssmaLocations.csv";

/// A program whose status messages and logs are German.
struct GermanHome : ProgramHome {
  GermanHome() {
    std::filesystem::copy_file(ZENQAY_SHARE "/I18nText.de.xml", directory().path() / "I18nText.de.xml");
    std::string components = directory().Read("Components.xml");
    components.insert(components.find("</COMPONENTS>"), "<TEXTS language=\"de\"/>");
    directory().Write("Components.xml", components);
  }
};

TEST(GermanTexts, StandInTheStatusAndInTheCodePageOfTheWindowsInTheRunLog) {
  GermanHome home;
  home.Execute(
      "INSERT INTO SITE VALUES ('AMS01', 'Amsterdam', 'C1', 0), ('PAR07', 'Paris', 'C5', 0);"
      "UPDATE tsi18ntext SET text = 'Standorte' WHERE text = 'Sites';"
      "UPDATE tstables SET lutm = '2024-01-31 10:00:00' WHERE tablename = 'SITE'");
  home.WriteExport(kLocationsFile, "Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n");
  home.WriteExport("Kv40QTMtssmaLocations.changes.csv",
                   "ChangedAt,ActionType,Location:text:cloc:key,Description:text:desc,Customer:text:cuno\n"
                   "2024-01-31T10:00:00Z,U,AMS01,Herengracht,\n"
                   "2024-02-01T00:00:03Z,D,PAR07,,\n");
  CommandLine line = home.Line();
  line.syncMethod = "2";

  const ProgramRun run = home.Run(line);

  EXPECT_EQ(home.Report(run),
            "exit 0\n"
            "-- out\n"
            "<time>  Standorte (ERP-Tabelle 110): Kopie begonnen.\n"
            "<time>  Standorte (ERP-Tabelle 110): Kopie vollständig, 0 kopiert, 1 geändert, 1 gelöscht.\n"
            "\n"
            "Table  State     Elapsed  Last message\n"
            "    1  complete  <elapsed>  Standorte (ERP-Tabelle 110): Kopie vollständig, 0 kopiert, 1 geändert, 1 "
            "gelöscht.\n"
            "-- err\n"
            "-- SITE_<day>.log\n"
            "Datum: <date> Uhrzeit: <time>\r\n"
            "\"Kopierte Zeilen: SITE -  0\"\r\n"
            "\"Ge\xE4nderte Zeilen: SITE -  1\"\r\n"
            "\"Gel\xF6schte Zeilen: SITE -  1\"\r\n");
}

TEST(GermanTexts, StandInTheRecordsOfAFailure) {
  GermanHome home;
  CommandLine line = home.Line();
  line.syncMethod = "2";

  home.Run(line);

  EXPECT_EQ(home.Log("SITE_<day>.log"),
            "\"Date-Time :<date> : <time>\"\r\n"
            "\"Kv40QTMtssmaLocations.LocationsManager\",\"Component can't create object: "
            "Kv40QTMtssmaLocations.LocationsManager (no file <home>/erp/Kv40QTMtssmaLocations.csv)\"\r\n"
            "\"Datenkopie: Site - Only Changed\",\"Standorte: Die Kopie aus  ist fehlgeschlagen.\"\r\n");
}

TEST(GermanTexts, StandInTheStartUpLog) {
  GermanHome home;
  CommandLine line = home.Line();
  line.statusHandle = "none";

  home.Run(line);

  EXPECT_EQ(home.Log("ZenqayDBSync.log"),
            "Datum: <date> Uhrzeit: <time>\r\n"
            "Die Datenkopie ist fehlgeschlagen.\r\n"
            "Error is - 2021004: Das Status-Handle muss eine Zahl sein, nicht \x84none\x93.\r\n"
            "Die Datenkopie kann nicht beginnen. Bitte verst\xE4ndigen Sie Ihre Systemverwaltung.\r\n");
}

}  // namespace
}  // namespace zenqay
