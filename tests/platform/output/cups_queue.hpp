#pragma once
// The private CUPS queue of the test run (scripts/print-services.sh starts it and names its
// device file and page log in the environment), and readers of what arrived there.

#include "platform/output/output_test_support.hpp"

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace qr::test {

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The private queue of the test run, one job at a time: every job lands in the same file.
class CupsQueue {
  public:
    static bool available() {
        return std::getenv("CUPS_SERVER") && std::getenv("QR_TEST_PRINTED_JOB") &&
               std::getenv("QR_TEST_CUPS_PAGE_LOG");
    }

    CupsQueue()
        : m_job(std::getenv("QR_TEST_PRINTED_JOB")),
          m_pageLog(std::getenv("QR_TEST_CUPS_PAGE_LOG")) {
        const std::string lock = m_job.string() + ".lock";
        m_lock = ::open(lock.c_str(), O_CREAT | O_RDWR, 0666);
        if (m_lock >= 0)
            ::flock(m_lock, LOCK_EX);
        std::filesystem::remove(m_job);
    }
    ~CupsQueue() {
        if (m_lock >= 0)
            ::close(m_lock); // releases the lock
    }
    CupsQueue(const CupsQueue&) = delete;
    CupsQueue& operator=(const CupsQueue&) = delete;

    /// A job name no other job of any test run has had.
    static std::string uniqueName(const std::string& title) {
        static int counter = 0;
        return title + " - test " + std::to_string(::getpid()) + "-" + std::to_string(++counter);
    }

    /// Waits until CUPS has finished the job named `name` and returns the page count it logged
    /// (-1 when it does not finish within a minute).
    int waitForJob(const std::string& name) const {
        const std::regex line("^job \\d+ pages total (\\d+) name (.*)$");
        for (int tries = 0; tries < 600; ++tries) {
            std::istringstream log(readFile(m_pageLog));
            std::string text;
            std::smatch found;
            while (std::getline(log, text)) {
                if (std::regex_match(text, found, line) && found[2] == name &&
                    std::filesystem::exists(m_job))
                    return std::stoi(found[1]);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        return -1;
    }

    /// What the device received.
    std::string printed() const { return readFile(m_job); }

  private:
    std::filesystem::path m_job;
    std::filesystem::path m_pageLog;
    int m_lock = -1;
};

// The PDF inside what the queue wrote (a PDF printer puts a PJL header in front of it).
inline std::unique_ptr<poppler::document> printedPdf(const std::string& data) {
    const auto start = data.find("%PDF-");
    if (start == std::string::npos)
        return nullptr;
    static std::vector<char> bytes; // poppler reads from it while the document lives
    bytes.assign(data.begin() + std::ptrdiff_t(start), data.end());
    return std::unique_ptr<poppler::document>(
        poppler::document::load_from_raw_data(bytes.data(), int(bytes.size())));
}

// The job name the device was given: PJL's JOB NAME, or PostScript's title.
inline std::string printedJobName(const std::string& data) {
    std::smatch found;
    static const std::regex pjl("@PJL JOB NAME = \"([^\"]*)\"");
    static const std::regex postscript("%%Title: ([^\r\n]*)");
    if (std::regex_search(data, found, pjl) || std::regex_search(data, found, postscript))
        return found[1];
    return {};
}

} // namespace qr::test
