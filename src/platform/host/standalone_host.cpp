#include "platform/host/standalone_host.hpp"

#include "platform/core/error.hpp"

#include <filesystem>
#include <iostream>

namespace qr::host {

namespace {

class ConfigUserService : public UserService {
  public:
    explicit ConfigUserService(const StandaloneConfig& config) : m_config(config) {}
    void setConnection(ConnectionRef connection) override { m_connection = std::move(connection); }
    User getUser(std::int32_t userId) override {
        auto it = m_config.users.find(userId);
        if (it == m_config.users.end()) {
            User none;
            none.id = userId;
            return none;
        }
        return it->second;
    }

  private:
    const StandaloneConfig& m_config;
    ConnectionRef m_connection;
};

class ConfigCompanyService : public CompanyService {
  public:
    explicit ConfigCompanyService(const StandaloneConfig& config) : m_config(config) {}
    void setConnection(ConnectionRef connection) override { m_connection = std::move(connection); }
    Company getCompany() override { return m_config.company; }

  private:
    const StandaloneConfig& m_config;
    ConnectionRef m_connection;
};

class ConfigVendorService : public VendorService {
  public:
    explicit ConfigVendorService(const StandaloneConfig& config) : m_config(config) {}
    void setConnection(ConnectionRef connection) override { m_connection = std::move(connection); }
    Vendor getVendor() override { return m_config.vendor; }

  private:
    const StandaloneConfig& m_config;
    ConnectionRef m_connection;
};

class ConfigSettingService : public UserSettingService {
  public:
    explicit ConfigSettingService(const StandaloneConfig& config) : m_config(config) {}
    void setConnection(ConnectionRef connection) override { m_connection = std::move(connection); }
    std::int32_t getSetting(std::int32_t userId, const std::string& name,
                            std::int32_t defaultValue) override {
        auto it = m_config.settings.find({userId, name});
        return it == m_config.settings.end() ? defaultValue : it->second;
    }

  private:
    const StandaloneConfig& m_config;
    ConnectionRef m_connection;
};

class ConfigPathHelper : public PathHelper {
  public:
    explicit ConfigPathHelper(const StandaloneConfig& config) : m_config(config) {}
    std::string sourceOf(const ConnectionRef&) override { return m_config.vendorPath; }
    std::string folderOf(const std::string& source) override { return source; }
    void afterExport(const std::string&, bool) override {}

  private:
    const StandaloneConfig& m_config;
};

class FilesystemFolderMaker : public FolderMaker {
  public:
    void makeFolder(const std::string& folder) override {
        std::error_code ec;
        std::filesystem::create_directories(folder, ec);
        if (ec || !std::filesystem::is_directory(folder)) {
            throw Error(75, "FolderMaker",
                        "Path/File access error: cannot create the folder " + folder + " (" +
                            ec.message() + ")");
        }
    }
};

class HostUsageLog : public UsageLog {
  public:
    explicit HostUsageLog(std::shared_ptr<StandaloneHost> host) : m_host(std::move(host)) {}
    void recordUsage(const std::string& outcome, const std::string& category,
                     const std::string& label) override {
        m_host->addUsage({outcome, category, label, {}});
    }
    void recordError(const std::string& text, const std::string&) override {
        std::cerr << "error logged: " << text << std::endl;
        m_host->addUsage({"Error", {}, {}, text});
    }

  private:
    std::shared_ptr<StandaloneHost> m_host;
};

} // namespace

StandaloneHost::StandaloneHost(StandaloneConfig config) : m_config(std::move(config)) {}

std::unique_ptr<UserService> StandaloneHost::createUserService() {
    return std::make_unique<ConfigUserService>(m_config);
}
std::unique_ptr<CompanyService> StandaloneHost::createCompanyService() {
    return std::make_unique<ConfigCompanyService>(m_config);
}
std::unique_ptr<VendorService> StandaloneHost::createVendorService() {
    return std::make_unique<ConfigVendorService>(m_config);
}
std::unique_ptr<UserSettingService> StandaloneHost::createUserSettingService() {
    return std::make_unique<ConfigSettingService>(m_config);
}
std::unique_ptr<PathHelper> StandaloneHost::createPathHelper() {
    return std::make_unique<ConfigPathHelper>(m_config);
}
std::unique_ptr<FolderMaker> StandaloneHost::createFolderMaker() {
    return std::make_unique<FilesystemFolderMaker>();
}
std::unique_ptr<UsageLog> StandaloneHost::createUsageLog() {
    return std::make_unique<HostUsageLog>(shared_from_this());
}

std::shared_ptr<MessageService> StandaloneHost::messageService() {
    return std::shared_ptr<MessageService>(shared_from_this(), this);
}

void StandaloneHost::showErrorDialog(const std::string& title, const std::string& text) {
    messageBox().show(text, MessageIcon::Critical, title);
}

std::vector<UsageEntry> StandaloneHost::usageEntries() const {
    std::lock_guard lock(m_mutex);
    return m_usage;
}

void StandaloneHost::addUsage(UsageEntry entry) {
    std::lock_guard lock(m_mutex);
    m_usage.push_back(std::move(entry));
}

} // namespace qr::host
