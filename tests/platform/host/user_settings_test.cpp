// The standalone host's user settings: a saved value replaces the stored one for that user and
// name only, in the master database or, without one, in the host's configuration.

#include "platform/db/connection.hpp"
#include "platform/host/standalone_host.hpp"
#include "support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace qr::host {
namespace {

void expectSavesReplaceOneSetting(UserSettingService& settings) {
    settings.saveSetting(1, "LblTop", 90);
    settings.saveSetting(1, "LblTop", -45); // replaces, does not add a second row
    settings.saveSetting(2, "LblTop", 30);
    EXPECT_EQ(settings.getSetting(1, "LblTop", 0), -45);
    EXPECT_EQ(settings.getSetting(2, "LblTop", 0), 30);
    EXPECT_EQ(settings.getSetting(1, "LblLeft", 7), 7) << "another name keeps its default";
    EXPECT_EQ(settings.getSetting(3, "LblTop", 7), 7) << "another user keeps the default";
}

TEST(UserSettings, ASavedSettingReplacesTheStoredOneInTheMasterDatabase) {
    test::TempDir dir;
    auto master = std::make_shared<db::Connection>("sqlite:" + (dir / "master.db").string());
    master->execute("CREATE TABLE UserSettings (UserID INTEGER, sName VARCHAR(255), "
                    "iValue INTEGER, PRIMARY KEY (UserID, sName))");
    auto host = std::make_shared<StandaloneHost>(StandaloneConfig{});
    auto settings = host->createUserSettingService();
    settings->setConnection(master);
    expectSavesReplaceOneSetting(*settings);
    auto rows = master->openRecordset("SELECT * FROM UserSettings WHERE UserID=1");
    EXPECT_EQ(rows->recordCount(), 1);
}

TEST(UserSettings, WithoutADatabaseTheHostKeepsSavedSettings) {
    auto host = std::make_shared<StandaloneHost>(StandaloneConfig{});
    expectSavesReplaceOneSetting(*host->createUserSettingService());
    // A service made later sees what an earlier one saved.
    EXPECT_EQ(host->createUserSettingService()->getSetting(1, "LblTop", 0), -45);
}

} // namespace
} // namespace qr::host
