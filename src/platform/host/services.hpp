#pragma once
// What the component asks of its host: the host's service classes, the records they return,
// and the platform's message box. The host application implements these; the standalone host
// (standalone_host.hpp) is a real implementation over the master and vendor databases, used by
// the command line and the tests.

#include <cstdint>
#include <memory>
#include <string>

namespace qr::db {
class Connection;
}

namespace qr::host {

/// A database connection borrowed from the host. Shared ownership because the host keeps the
/// connection for its own work while the service and the reports hold it for a call.
using ConnectionRef = std::shared_ptr<db::Connection>;

/// The host's user record (name, phone, e-mail; empty strings when unknown).
struct User {
    std::int32_t id = 0;
    std::string name;
    std::string phone;
    std::string email;
};

/// The firm that prepares the bid.
struct Company {
    std::string name;
    std::string phone;
    std::string fax;
    std::string email;
};

struct Vendor {
    std::string name;
};

/// Shows the host's error dialog.
class MessageService {
  public:
    virtual ~MessageService() = default;
    virtual void showErrorDialog(const std::string& title, const std::string& text) = 0;
};

/// The host's service container; hands out the message service (may return null, or raise,
/// when it has none).
class ServiceContainer {
  public:
    virtual ~ServiceContainer() = default;
    virtual std::shared_ptr<MessageService> messageService() = 0;
};

/// Each service is given a connection before it is asked anything.
class UserService {
  public:
    virtual ~UserService() = default;
    virtual void setConnection(ConnectionRef connection) = 0;
    virtual User getUser(std::int32_t userId) = 0;
};

class CompanyService {
  public:
    virtual ~CompanyService() = default;
    virtual void setConnection(ConnectionRef connection) = 0;
    virtual Company getCompany() = 0;
};

class VendorService {
  public:
    virtual ~VendorService() = default;
    virtual void setConnection(ConnectionRef connection) = 0;
    virtual Vendor getVendor() = 0;
};

class UserSettingService {
  public:
    virtual ~UserSettingService() = default;
    virtual void setConnection(ConnectionRef connection) = 0;
    /// The user's stored number for `name`, or `defaultValue` when none is stored.
    virtual std::int32_t getSetting(std::int32_t userId, const std::string& name,
                                    std::int32_t defaultValue) = 0;
    /// Stores `value` as the user's `name` setting, replacing any stored before; the next
    /// getSetting returns it. Raises qr::Error when it cannot be stored.
    virtual void saveSetting(std::int32_t userId, const std::string& name, std::int32_t value) = 0;
};

class PathHelper {
  public:
    virtual ~PathHelper() = default;
    /// A text that identifies where the vendor data lives, derived from its connection.
    virtual std::string sourceOf(const ConnectionRef& vendorConnection) = 0;
    /// The vendor data's root folder (under which the "Jobs" folders lie) for that text.
    virtual std::string folderOf(const std::string& source) = 0;
    /// Called after each export with the folder written to.
    virtual void afterExport(const std::string& folder, bool flag) = 0;
};

class FolderMaker {
  public:
    virtual ~FolderMaker() = default;
    /// Afterwards the folder exists (parents included).
    virtual void makeFolder(const std::string& folder) = 0;
};

class UsageLog {
  public:
    virtual ~UsageLog() = default;
    virtual void recordUsage(const std::string& outcome, const std::string& category,
                             const std::string& label) = 0;
    /// An error entry: the text, and a second value the component always leaves empty.
    virtual void recordError(const std::string& text, const std::string& extra) = 0;
};

enum class MessageIcon { None, Information, Critical };

/// The platform's plain message box.
class MessageBox {
  public:
    virtual ~MessageBox() = default;
    virtual void show(const std::string& text, MessageIcon icon, const std::string& title) = 0;
};

/// The host classes the component creates when it needs one, as the host registers them.
class HostClasses {
  public:
    virtual ~HostClasses() = default;
    virtual std::unique_ptr<UserService> createUserService() = 0;
    virtual std::unique_ptr<CompanyService> createCompanyService() = 0;
    virtual std::unique_ptr<VendorService> createVendorService() = 0;
    virtual std::unique_ptr<UserSettingService> createUserSettingService() = 0;
    virtual std::unique_ptr<PathHelper> createPathHelper() = 0;
    virtual std::unique_ptr<FolderMaker> createFolderMaker() = 0;
    virtual std::unique_ptr<UsageLog> createUsageLog() = 0;
};

/// Install the host's classes and the platform message box for the whole process (the host
/// does this once at start-up). Until a host is installed, creating a host class raises
/// qr::Error 91 (object not set).
void installHostClasses(std::shared_ptr<HostClasses> classes);
HostClasses& hostClasses();
void installMessageBox(std::shared_ptr<MessageBox> box);
MessageBox& messageBox();

/// A message box that writes to standard error ("TITLE: TEXT"), for non-interactive use.
class StderrMessageBox : public MessageBox {
  public:
    void show(const std::string& text, MessageIcon icon, const std::string& title) override;
};

} // namespace qr::host
