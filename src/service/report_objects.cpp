#include "service/report_objects.hpp"

#include "platform/core/error.hpp"
#include "service/report_registry.hpp"

#include <map>
#include <mutex>

namespace qr::service {

namespace {

struct Table {
    std::mutex mutex;
    std::map<std::string, ReportFactory> factories;
    bool loaded = false;
};

Table& table() {
    static Table instance;
    return instance;
}

std::map<std::string, std::unique_ptr<engine::Report>>& threadObjects() {
    thread_local std::map<std::string, std::unique_ptr<engine::Report>> objects;
    return objects;
}

void loadBuiltIns(Table& t) {
    if (t.loaded)
        return;
    t.loaded = true;
    for (const auto& entry : reportRegistry()) {
        if (entry.factory)
            t.factories.emplace(entry.className, entry.factory);
    }
}

} // namespace

void addReportClass(const std::string& className, ReportFactory factory) {
    auto& t = table();
    std::lock_guard lock(t.mutex);
    loadBuiltIns(t);
    t.factories[className] = std::move(factory);
}

bool hasReportClass(const std::string& className) {
    auto& t = table();
    std::lock_guard lock(t.mutex);
    loadBuiltIns(t);
    return t.factories.count(className) != 0;
}

engine::Report& reportObject(const std::string& className) {
    auto& objects = threadObjects();
    auto found = objects.find(className);
    if (found != objects.end())
        return *found->second;

    ReportFactory factory;
    {
        auto& t = table();
        std::lock_guard lock(t.mutex);
        loadBuiltIns(t);
        auto it = t.factories.find(className);
        if (it != t.factories.end())
            factory = it->second;
    }
    if (!factory) {
        // What the platform says for a class it cannot create.
        throw Error(429, "PrintReports", "ActiveX component can't create object");
    }
    auto created = factory();
    auto& ref = *created;
    objects.emplace(className, std::move(created));
    return ref;
}

void releaseReportObject(const std::string& className) {
    threadObjects().erase(className);
}

} // namespace qr::service
