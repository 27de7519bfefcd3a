#include "service/report_table.hpp"

#include "reports/cost/ar_markup.hpp"
#include "reports/cost/ar_markup2.hpp"
#include "reports/cost/final_labor.hpp"
#include "reports/cost/final_summary.hpp"
#include "reports/glass/final_glass_report.hpp"

namespace qr::service {

std::vector<ReportClassEntry> builtInReportClasses() {
    // Each report is listed here as it is built.
    return {
        {"FinalGlassAR", [] { return std::make_unique<reports::FinalGlassAR>(); }},
        {"FinalGlassAR2", [] { return std::make_unique<reports::FinalGlassAR2>(); }},
        {"FinalGlassARNP", [] { return std::make_unique<reports::FinalGlassARNP>(); }},
        {"FinalGlassARNP2", [] { return std::make_unique<reports::FinalGlassARNP2>(); }},
        {"ARMarkup", [] { return std::make_unique<reports::ARMarkup>(); }},
        {"ARMarkup2", [] { return std::make_unique<reports::ARMarkup2>(); }},
        {"FinalSummaryAR", [] { return std::make_unique<reports::FinalSummaryAR>(); }},
        {"FinalSummaryAR2", [] { return std::make_unique<reports::FinalSummaryAR2>(); }},
        {"FinalLaborAR", [] { return std::make_unique<reports::FinalLaborAR>(); }},
    };
}

} // namespace qr::service
