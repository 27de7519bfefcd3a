#pragma once
// The standalone host: a real implementation of the host classes for use outside the host
// application (the command line, the demo, the tests). Given connections, its services read the
// master database's Users, Company and UserSettings tables and the vendor database's Vendor
// table, and store user settings in UserSettings; without one they answer from (and store
// settings in) the configuration. It makes folders with std::filesystem, shows error dialogs
// through the platform message box, and keeps the usage and error entries it is given (the
// recent ones in memory), writing every one to the master database's UsageLog table when it
// has a log connection (error entries also go to standard error).

#include "platform/host/services.hpp"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace qr::host {

struct StandaloneConfig {
    std::map<std::int32_t, User> users;
    Company company;
    Vendor vendor;
    /// (user id, setting name) -> value, e.g. {1, "LblTop"} -> 90.
    std::map<std::pair<std::int32_t, std::string>, std::int32_t> settings;
    /// The vendor data folder PathHelper reports. Empty: derived from the vendor connection
    /// (a SQLite database's folder; the working folder for a server database).
    std::string vendorPath;
};

struct UsageEntry {
    std::string outcome;
    std::string category;
    std::string label;
    std::string error; // non-empty for error entries
};

class StandaloneHost : public HostClasses,
                       public ServiceContainer,
                       public MessageService,
                       public std::enable_shared_from_this<StandaloneHost> {
  public:
    explicit StandaloneHost(StandaloneConfig config);

    // HostClasses
    std::unique_ptr<UserService> createUserService() override;
    std::unique_ptr<CompanyService> createCompanyService() override;
    std::unique_ptr<VendorService> createVendorService() override;
    std::unique_ptr<UserSettingService> createUserSettingService() override;
    std::unique_ptr<PathHelper> createPathHelper() override;
    std::unique_ptr<FolderMaker> createFolderMaker() override;
    std::unique_ptr<UsageLog> createUsageLog() override;

    // ServiceContainer
    std::shared_ptr<MessageService> messageService() override;

    // MessageService: the error dialog through the platform message box.
    void showErrorDialog(const std::string& title, const std::string& text) override;

    /// Usage and error entries kept in memory: the most recent ones, at most this many.
    static constexpr std::size_t kKeptUsageEntries = 1000;
    /// The usage and error entries recorded so far, oldest first (the most recent
    /// kKeptUsageEntries at least, when more were recorded).
    std::vector<UsageEntry> usageEntries() const;
    const StandaloneConfig& config() const { return m_config; }

    void addUsage(UsageEntry entry);
    /// The connection usage and error entries are written to (the master database); none
    /// keeps them in memory only.
    void setLogConnection(ConnectionRef connection);

  private:
    StandaloneConfig m_config;
    mutable std::mutex m_mutex;
    std::vector<UsageEntry> m_usage;
    ConnectionRef m_logConnection;
};

} // namespace qr::host
