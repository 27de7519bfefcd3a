#include "platform/core/system_formats.hpp"

#include "platform/core/decimal_digits.hpp"
#include "platform/core/error.hpp"

#include <QDate>
#include <QLocale>
#include <QTime>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <mutex>

namespace qr {
namespace {

constexpr const char* kSource = "SystemFormats";
constexpr const char* kHomeLocale = "en_US";

// "en_US.UTF-8@euro" -> "en_US".
std::string bareLocaleName(const std::string& name) {
    return name.substr(0, name.find_first_of(".@"));
}

bool isPosixLocale(const std::string& name) {
    return name.empty() || name == "C" || name == "POSIX";
}

QLocale resolveLocale(const std::string& requested) {
    if (!requested.empty()) {
        std::string bare = bareLocaleName(requested);
        if (isPosixLocale(bare)) {
            return QLocale(kHomeLocale);
        }
        QLocale locale(QString::fromStdString(bare));
        if (locale.language() == QLocale::C) {
            throw Error::component(kSource, "Unknown locale \"" + requested + "\"");
        }
        return locale;
    }
    for (const char* variable : {"LC_ALL", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0') {
            continue;
        }
        std::string bare = bareLocaleName(value);
        QLocale locale(QString::fromStdString(bare));
        if (isPosixLocale(bare) || locale.language() == QLocale::C) {
            break; // the C locale has no national formats: use the host's home settings
        }
        return locale;
    }
    return QLocale(kHomeLocale);
}

// Widen a two-digit year ("yy") to four digits, leaving quoted text alone.
QString withFourDigitYear(const QString& format) {
    QString out;
    bool quoted = false;
    for (qsizetype i = 0; i < format.size();) {
        QChar c = format[i];
        if (c == u'\'') {
            quoted = !quoted;
        }
        if (!quoted && c == u'y') {
            qsizetype run = 0;
            while (i + run < format.size() && format[i + run] == u'y') {
                ++run;
            }
            out += run == 2 ? QStringLiteral("yyyy") : QString(run, u'y');
            i += run;
            continue;
        }
        out += c;
        ++i;
    }
    return out;
}

// Add seconds after the minutes of a time format that has none ("h:mm AP" -> "h:mm:ss AP").
QString withSeconds(const QString& format) {
    if (format.contains(u's')) {
        return format;
    }
    qsizetype minutes = format.indexOf(QStringLiteral("mm"));
    if (minutes < 0) {
        return format;
    }
    QString out = format;
    out.insert(minutes + 2, QStringLiteral(":ss"));
    return out;
}

QDate toQDate(const Date::Parts& p) {
    return QDate(p.year, p.month, p.day);
}
QTime toQTime(const Date::Parts& p) {
    return QTime(p.hour, p.minute, p.second);
}

} // namespace

struct SystemFormats::Impl {
    QLocale locale;
    QString dateFormat;
    QString timeFormat;
    QString timeWithSecondsFormat;
    int currencyDecimals = 2;

    explicit Impl(QLocale l) : locale(std::move(l)) {
        dateFormat = withFourDigitYear(locale.dateFormat(QLocale::ShortFormat));
        timeFormat = locale.timeFormat(QLocale::ShortFormat);
        timeWithSecondsFormat = withSeconds(timeFormat);
        // The locale's default currency decimals, read off its own rendering of zero.
        QString zero = locale.toCurrencyString(0.0);
        qsizetype point = zero.indexOf(locale.decimalPoint());
        currencyDecimals = 0;
        for (qsizetype i = point < 0 ? zero.size() : point + 1; i < zero.size() && zero[i] == u'0';
             ++i) {
            ++currencyDecimals;
        }
    }

    std::string currencyExcelPattern() const {
        // The locale's own rendering of a grouped amount, its digits replaced by placeholders;
        // the text around them is the symbol and its spacing, quoted where Excel needs it.
        const QString sample = locale.toCurrencyString(1234.0, QString(), currencyDecimals);
        qsizetype first = 0;
        while (first < sample.size() && !sample[first].isDigit()) {
            ++first;
        }
        qsizetype last = sample.size() - 1;
        while (last > first && !sample[last].isDigit()) {
            --last;
        }
        std::string pattern = excelLiteral(sample.left(first).toStdString());
        pattern += "#,##0";
        if (currencyDecimals > 0) {
            pattern += "." + std::string(static_cast<std::size_t>(currencyDecimals), '0');
        }
        return pattern + excelLiteral(sample.mid(last + 1).toStdString());
    }

    static std::string excelLiteral(const std::string& text) {
        if (text.empty() || text == "$") {
            return text;
        }
        return "\"" + text + "\"";
    }

    std::string currencyText(detail::DecimalDigits amount) const {
        amount.roundHalfAway(currencyDecimals);
        double magnitude = std::fabs(amount.toDouble());
        QString text = locale.toCurrencyString(magnitude, QString(), currencyDecimals);
        if (amount.negative && !amount.isZero()) {
            text.prepend(locale.negativeSign());
        }
        return text.toStdString();
    }
};

SystemFormats::SystemFormats(const std::string& localeName)
    : m_impl(std::make_unique<Impl>(resolveLocale(localeName))) {}

SystemFormats::~SystemFormats() = default;

SystemFormats::SystemFormats(const SystemFormats& other)
    : m_impl(std::make_unique<Impl>(*other.m_impl)) {}

SystemFormats& SystemFormats::operator=(const SystemFormats& other) {
    if (this != &other) {
        *m_impl = *other.m_impl;
    }
    return *this;
}

std::string SystemFormats::shortDate(Date date) const {
    return m_impl->locale.toString(toQDate(date.parts()), m_impl->dateFormat).toStdString();
}

std::string SystemFormats::shortTime(Date date) const {
    return m_impl->locale.toString(toQTime(date.parts()), m_impl->timeFormat).toStdString();
}

std::string SystemFormats::longTime(Date date) const {
    return m_impl->locale.toString(toQTime(date.parts()), m_impl->timeWithSecondsFormat)
        .toStdString();
}

std::string SystemFormats::currency(Currency amount) const {
    return m_impl->currencyText(detail::DecimalDigits::fromScaled(amount.ticks(), 4));
}

std::string SystemFormats::currency(double amount) const {
    if (!std::isfinite(amount)) {
        throw Error::overflow(kSource);
    }
    return m_impl->currencyText(detail::DecimalDigits::fromDouble(amount, 15));
}

std::string SystemFormats::currencyExcelPattern() const {
    return m_impl->currencyExcelPattern();
}

std::string SystemFormats::localeName() const {
    return m_impl->locale.name().toStdString();
}

namespace {

std::atomic<bool> g_clockPinned{false};
std::atomic<double> g_pinnedSerial{0.0};

Date sourceDateEpoch(const char* text) {
    char* end = nullptr;
    errno = 0;
    long long seconds = std::strtoll(text, &end, 10);
    if (end == text || *end != '\0' || errno == ERANGE) {
        throw Error::component("Clock", "SOURCE_DATE_EPOCH is not a whole number of seconds: \"" +
                                            std::string(text) + "\"");
    }
    return Date::fromUnixSeconds(seconds);
}

std::mutex g_formatsMutex;

SystemFormats& formatsStorage() {
    static SystemFormats formats;
    return formats;
}

} // namespace

Date Clock::now() {
    if (g_clockPinned.load()) {
        return Date{g_pinnedSerial.load()};
    }
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH"); epoch != nullptr && *epoch) {
        return sourceDateEpoch(epoch);
    }
    std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    return Date::fromParts(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                           local.tm_min, std::min(local.tm_sec, 59));
}

void Clock::pin(Date date) {
    g_pinnedSerial.store(date.serial);
    g_clockPinned.store(true);
}

void Clock::unpin() {
    g_clockPinned.store(false);
}

const SystemFormats& systemFormats() {
    return formatsStorage();
}

void setSystemFormats(const SystemFormats& formats) {
    std::lock_guard lock(g_formatsMutex);
    formatsStorage() = formats;
}

} // namespace qr
