#include "components/files/file_host.h"

#include <gtest/gtest.h>

#include "components/files/erp_files.h"

namespace zenqay {
namespace {

Text CreationError(ErpFiles& erp, const Text& classId) {
  return ErrorOf([&] { erp.host.Create(classId); });
}

TEST(FileHostCreate, RaisesAManagerWhoseExportIsMissingNamingTheFile) {
  ErpFiles erp;
  erp.directory.Write("Kv50QTMtscfgObjects.changes.csv", "ChangedAt,ActionType,Object:text:crob:key\n");
  const Text path = (erp.directory.path() / "Kv50QTMtscfgObjects.csv").string();

  EXPECT_EQ(CreationError(erp, "Kv50QTMtscfgObjects.ObjectsManager"),
            "429 Component can't create object: Kv50QTMtscfgObjects.ObjectsManager (no file " + path +
                ") (Kv50QTMtscfgObjects.ObjectsManager)");
}

TEST(FileHostCreate, RaisesEveryClassIdThatItDoesNotServe) {
  ErpFiles erp;
  erp.directory.Write("A.csv", "A\n");
  erp.directory.Write("B.csv", "B\n");
  std::filesystem::create_directory(erp.directory.path() / "sub");
  erp.directory.Write("sub/A.csv", "A\n");

  for (const char* classId : {"",
                              "A",
                              "A.",
                              ".",
                              "A.As",
                              "A.Manager",
                              ".AsManager",
                              "A.AsManagers",
                              "A.asmanager",
                              "A.B.AsManager",
                              "sub/A.AsManager",
                              "../A.AsManager",
                              "A.x/AsManager",
                              "A.x\\AsManager",
                              "AsManager",
                              "java:java.util.Date",
                              "NetListSelectionCriteria.NetListOther",
                              "netlistselectioncriteria.netlistin",
                              "java:com.korvel.k3impl.about.Other",
                              "java:com.korvel.k3.kxi1.accessforcom"}) {
    EXPECT_EQ(CreationError(erp, classId), "429 Component can't create object: " + Text(classId) +
                                               " (the ERP files in " + erp.directory.path().string() +
                                               " have no such class) (" + classId + ")");
  }
}

TEST(FileHostCreate, ReadsTheFileNamedInFrontOfTheDotUnderThePluralBehindIt) {
  ErpFiles erp;
  erp.directory.Write("Lines.csv", "Object:text:crob:key\nA\n");

  const Object manager = erp.host.Create("Lines.ThingsManager");
  const Value rows = manager.Call("List", "", Highest(1));

  EXPECT_EQ(RowsOf(rows, {"Object", "Things"}), "'A', false nothing\n");
}

TEST(FileHostCreate, GivesAnObjectOfItsOwnEachTime) {
  ErpFiles erp;
  erp.directory.Write("A.csv", "A\n");

  for (const char* classId :
       {"A.AsManager", "NetListSelectionCriteria.NetListSelectionCriteria", "NetListSelectionCriteria.NetListIn",
        "NetListSelectionCriteria.NetListOut", "NetListSelectionCriteria.NetListPeriod",
        "NetListSelectionCriteria.NetListParameter", "java:com.korvel.k3impl.about.AdapterComponentInfo",
        "java:com.korvel.k3.kxi1.AccessForCom"}) {
    const Object first = erp.host.Create(classId);
    const Object second = erp.host.Create(classId);
    EXPECT_NE(first, second) << classId;
  }
}

Text VersionOf(const ErpFiles& erp) {
  FileHost host(erp.directory.path());
  const Object info = host.Create("java:com.korvel.k3impl.about.AdapterComponentInfo");
  return Shown(info.Get("getVersion"));
}

TEST(AdapterComponentInfo, GivesTheFirstLineOfTheVersionFile) {
  const struct {
    const char* content;
    const char* version;
  } cases[] = {{"2.31\n", "'2.31'"}, {"10\r\n2.4\r\n", "'10'"}, {"2.3", "'2.3'"}, {" next \n", "' next '"}, {"", "''"},
               {"\n2.4", "''"}};

  for (const auto& [content, version] : cases) {
    ErpFiles erp;
    erp.directory.Write("adapter-version.txt", content);
    EXPECT_EQ(VersionOf(erp), version);
  }
}

TEST(AdapterComponentInfo, SaysANewEnoughVersionWithoutAFile) {
  const ErpFiles erp;

  EXPECT_EQ(VersionOf(erp), "'2.4'");
}

TEST(AdapterComponentInfo, RaisesAVersionFileThatCannotBeRead) {
  const ErpFiles erp;
  std::filesystem::create_directory(erp.directory.path() / "adapter-version.txt");

  EXPECT_EQ(ErrorOf([&] { VersionOf(erp); }),
            "75 Path/File access error: adapter-version.txt (java:com.korvel.k3impl.about.AdapterComponentInfo)");
}

TEST(AccessForCom, LeadsToASessionThatTakesManagersAndEmptyReferences) {
  ErpFiles erp;
  const Object manager = erp.Lines("A\n");
  const Object access = erp.host.Create("java:com.korvel.k3.kxi1.AccessForCom");

  const Object toolkit = access.Get("kxiToolKit_getDefaultToolkit").AsObject();
  const Object session = toolkit.Get("createUserSession").AsObject();
  Value reference = manager;
  Value nothing = Object();

  EXPECT_TRUE(session.Call("addManager", Argument::ByReference(reference)).Is<Empty>());
  EXPECT_TRUE(session.Call("ADDMANAGER", Argument::ByReference(nothing)).Is<Empty>());
  EXPECT_EQ(reference, Value(manager));
  EXPECT_EQ(nothing, Value(Object()));
}

TEST(AccessForCom, RaisesWhatItsObjectsDoNotHave) {
  ErpFiles erp;
  const Object info = erp.host.Create("java:com.korvel.k3impl.about.AdapterComponentInfo");
  const Object access = erp.host.Create("java:com.korvel.k3.kxi1.AccessForCom");
  const Object toolkit = access.Get("KXITOOLKIT_GETDEFAULTTOOLKIT").AsObject();
  const Object session = toolkit.Get("CreateUserSession").AsObject();
  const Text lacks = "438 Object doesn't support this property or method: ";

  EXPECT_EQ(ErrorOf([&] { info.Get("version"); }),
            lacks + "version (java:com.korvel.k3impl.about.AdapterComponentInfo)");
  EXPECT_EQ(ErrorOf([&] { info.Call("version"); }),
            lacks + "version (java:com.korvel.k3impl.about.AdapterComponentInfo)");
  EXPECT_EQ(ErrorOf([&] { access.Get("createUserSession"); }),
            lacks + "createUserSession (java:com.korvel.k3.kxi1.AccessForCom)");
  EXPECT_EQ(ErrorOf([&] { toolkit.Put("createUserSession", 1); }),
            lacks + "createUserSession (java:com.korvel.k3.kxi1.AccessForCom)");
  EXPECT_EQ(ErrorOf([&] { session.Call("close"); }), lacks + "close (java:com.korvel.k3.kxi1.AccessForCom)");
  EXPECT_EQ(ErrorOf([&] { session.Call("addManager"); }),
            "450 Wrong number of arguments: addManager (java:com.korvel.k3.kxi1.AccessForCom)");
  EXPECT_EQ(ErrorOf([&] { session.Call("addManager", "A"); }),
            "13 Type mismatch: addManager takes a manager (java:com.korvel.k3.kxi1.AccessForCom)");
}

}  // namespace
}  // namespace zenqay
