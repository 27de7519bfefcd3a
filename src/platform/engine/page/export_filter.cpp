#include "platform/engine/page/export_filter.hpp"

#include "platform/core/error.hpp"

#include <array>
#include <mutex>

namespace qr::page {

namespace {

struct Registry {
    std::mutex mutex;
    std::array<ExportFilterFactory, 2> factories;
};

Registry& registry() {
    static Registry instance;
    return instance;
}

} // namespace

void installExportFilter(ExportKind kind, ExportFilterFactory factory) {
    auto& r = registry();
    std::lock_guard lock(r.mutex);
    r.factories[static_cast<size_t>(kind)] = std::move(factory);
}

std::unique_ptr<ExportFilter> createExportFilter(ExportKind kind) {
    ExportFilterFactory factory;
    {
        auto& r = registry();
        std::lock_guard lock(r.mutex);
        factory = r.factories[static_cast<size_t>(kind)];
    }
    if (!factory) {
        throw Error::component("PrintReports", kind == ExportKind::Pdf
                                                   ? "No PDF export filter is installed."
                                                   : "No spreadsheet export filter is installed.");
    }
    return factory();
}

} // namespace qr::page
