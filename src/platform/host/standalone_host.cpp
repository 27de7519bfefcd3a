#include "platform/host/standalone_host.hpp"

#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"
#include "platform/core/system_formats.hpp"
#include "platform/db/connection.hpp"
#include "platform/db/connection_string.hpp"
#include "platform/db/recordset.hpp"

#include <filesystem>
#include <iostream>

namespace qr::host {

namespace {

// Text of a column of the first row, "" when there is no row, no such column or a Null.
std::string firstRowText(db::Recordset& rows, const char* column) {
    if (rows.eof() || !rows.hasColumn(column)) return {};
    Variant value = rows.value(column);
    return value.isNull() || value.isEmpty() ? std::string() : toText(value);
}

class ConfigUserService : public UserService {
  public:
    explicit ConfigUserService(const StandaloneConfig& config) : m_config(config) {}
    void setConnection(ConnectionRef connection) override { m_connection = std::move(connection); }
    User getUser(std::int32_t userId) override {
        if (m_connection) {
            auto rows = m_connection->openRecordset("SELECT * FROM Users WHERE UserID=" +
                                                    std::to_string(userId));
            User user;
            user.id = userId;
            user.name = firstRowText(*rows, "sName");
            user.phone = firstRowText(*rows, "sPhone");
            user.email = firstRowText(*rows, "sEmail");
            return user;
        }
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
    Company getCompany() override {
        if (!m_connection) return m_config.company;
        auto rows = m_connection->openRecordset("SELECT * FROM Company");
        Company company;
        company.name = firstRowText(*rows, "sName");
        company.phone = firstRowText(*rows, "sPhone");
        company.fax = firstRowText(*rows, "sFax");
        company.email = firstRowText(*rows, "sEmail");
        return company;
    }

  private:
    const StandaloneConfig& m_config;
    ConnectionRef m_connection;
};

class ConfigVendorService : public VendorService {
  public:
    explicit ConfigVendorService(const StandaloneConfig& config) : m_config(config) {}
    void setConnection(ConnectionRef connection) override { m_connection = std::move(connection); }
    Vendor getVendor() override {
        if (!m_connection) return m_config.vendor;
        auto rows = m_connection->openRecordset("SELECT * FROM Vendor");
        return Vendor{firstRowText(*rows, "sName")};
    }

  private:
    const StandaloneConfig& m_config;
    ConnectionRef m_connection;
};

class ConfigSettingService : public UserSettingService {
    static std::string quoted(const std::string& text) {
        std::string out;
        for (char c : text) {
            out += c;
            if (c == '\'') out += '\'';
        }
        return out;
    }

  public:
    explicit ConfigSettingService(StandaloneConfig& config) : m_config(config) {}
    void setConnection(ConnectionRef connection) override { m_connection = std::move(connection); }
    std::int32_t getSetting(std::int32_t userId, const std::string& name,
                            std::int32_t defaultValue) override {
        if (m_connection) {
            // The name is the component's own constant ("LblTop", "LblLeft"), never user input;
            // its quotes are doubled all the same.
            auto rows = m_connection->openRecordset(
                "SELECT * FROM UserSettings WHERE UserID=" + std::to_string(userId) +
                " AND sName='" + quoted(name) + "'");
            if (rows->eof()) return defaultValue;
            Variant value = rows->value("iValue");
            return value.isNull() ? defaultValue : toLong(value);
        }
        auto it = m_config.settings.find({userId, name});
        return it == m_config.settings.end() ? defaultValue : it->second;
    }
    // One row per user and name: the old row goes and the new one comes in one transaction,
    // the same statements on every database.
    void saveSetting(std::int32_t userId, const std::string& name, std::int32_t value) override {
        if (!m_connection) {
            m_config.settings[{userId, name}] = value;
            return;
        }
        db::Transaction transaction(*m_connection);
        m_connection->execute("DELETE FROM UserSettings WHERE UserID=? AND sName=?",
                              {Variant(userId), Variant(name)});
        m_connection->execute("INSERT INTO UserSettings (UserID, sName, iValue) VALUES (?, ?, ?)",
                              {Variant(userId), Variant(name), Variant(value)});
        transaction.commit();
    }

  private:
    StandaloneConfig& m_config;
    ConnectionRef m_connection;
};

class ConfigPathHelper : public PathHelper {
  public:
    explicit ConfigPathHelper(const StandaloneConfig& config) : m_config(config) {}
    // The source is the vendor connection's (masked) string; the folder is the configured
    // vendor folder, else a SQLite database's folder, else the working folder.
    std::string sourceOf(const ConnectionRef& vendorConnection) override {
        return vendorConnection ? vendorConnection->describe() : std::string();
    }
    std::string folderOf(const std::string& source) override {
        if (!m_config.vendorPath.empty()) return m_config.vendorPath;
        if (source.rfind("sqlite:", 0) == 0) {
            auto parsed = db::parseConnectionString(source);
            if (parsed.path != ":memory:") {
                auto folder = std::filesystem::absolute(parsed.path).parent_path();
                return folder.string();
            }
        }
        return std::filesystem::current_path().string();
    }
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

void StandaloneHost::setLogConnection(ConnectionRef connection) {
    std::lock_guard lock(m_mutex);
    m_logConnection = std::move(connection);
}

void StandaloneHost::addUsage(UsageEntry entry) {
    ConnectionRef log;
    {
        std::lock_guard lock(m_mutex);
        // A host that runs for days keeps the recent entries only; the log table keeps them all.
        if (m_usage.size() >= kKeptUsageEntries)
            m_usage.erase(m_usage.begin(), m_usage.begin() + kKeptUsageEntries / 2);
        m_usage.push_back(entry);
        log = m_logConnection;
    }
    if (!log) return;
    const auto now = Clock::now();
    log->execute("INSERT INTO UsageLog (dLogged, sOutcome, sCategory, sLabel, sError) "
                 "VALUES (?, ?, ?, ?, ?)",
                 {Variant(now), Variant(entry.outcome), Variant(entry.category),
                  Variant(entry.label),
                  entry.error.empty() ? Variant::null() : Variant(entry.error)});
}

} // namespace qr::host
