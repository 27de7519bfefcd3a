// One process, many requests in a row: the markup request of the sample job, printed to a
// file and exported, N times. Prints the resident set after the first hundred requests and at
// the end, so a leak per request (report objects, pages, connections, caches that never stop
// growing) shows as growth:
//   requests=10000 rss_after_100_kib=... rss_end_kib=... rss_growth_kib=... errors=0
// Usage: qr_request_loop [REQUESTS] (default 10000).

#include "data/sample/sample_writer.hpp"
#include "data/schema.hpp"
#include "platform/db/connection.hpp"
#include "platform/host/module_state.hpp"
#include "platform/host/standalone_host.hpp"
#include "service/print_service.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace qr;

long residentKiB() {
    std::ifstream status("/proc/self/status");
    std::string key;
    long value = 0;
    while (status >> key) {
        if (key == "VmRSS:") {
            status >> value;
            return value;
        }
        status.ignore(1 << 12, '\n');
    }
    return -1;
}

// Counts what would have been shown to the user; a request that shows anything failed.
class CountingBox : public host::MessageBox {
  public:
    void show(const std::string& text, host::MessageIcon, const std::string& title) override {
        if (++shown <= 3)
            std::cerr << "shown: " << title << ": " << text << "\n";
    }
    int shown = 0;
};

} // namespace

int main(int argc, char** argv) {
    const long requests = argc > 1 ? std::atol(argv[1]) : 10000;
    if (requests < 100) {
        std::cerr << "usage: qr_request_loop [REQUESTS >= 100]\n";
        return 2;
    }
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    char pattern[] = "/tmp/quarvex-request-loop.XXXXXX";
    const char* made = ::mkdtemp(pattern);
    if (!made) {
        std::cerr << "qr_request_loop: cannot make a scratch folder\n";
        return 1;
    }
    const fs::path folder = made;
    ::setenv("QUARVEX_PRINTER", ("file:" + (folder / "printed.pdf").string()).c_str(), 1);

    int status = 0;
    {
        auto standalone = std::make_shared<host::StandaloneHost>(host::StandaloneConfig{});
        auto box = std::make_shared<CountingBox>();
        host::installHostClasses(standalone);
        host::installMessageBox(box);

        auto vendor = std::make_shared<db::Connection>("sqlite:" + (folder / "vendor.db").string());
        auto master = std::make_shared<db::Connection>("sqlite:" + (folder / "master.db").string());
        data::sample::writeSample(*vendor, *master);
        service::PrintService service;
        service.setContainer(standalone);
        service.setVendorConnection(vendor);
        service.setMasterConnection(master);

        const std::string request = "armarkup " +
                                    data::reportTableName(data::ReportTableKind::Markup, 1) +
                                    " false 1 1 true true false |x |";
        long afterHundred = 0;
        for (long i = 1; i <= requests; ++i) {
            std::string args = request;
            service.PrintReport(args);
            if (i == 100)
                afterHundred = residentKiB();
        }
        const long end = residentKiB();
        std::cout << "requests=" << requests << " rss_after_100_kib=" << afterHundred
                  << " rss_end_kib=" << end << " rss_growth_kib=" << end - afterHundred
                  << " errors=" << box->shown << std::endl;
        status = box->shown == 0 ? 0 : 1;
        host::moduleState() = host::ModuleState{};
        host::installHostClasses(nullptr);
        host::installMessageBox(nullptr);
    }
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return status;
}
