#include "data/sample/sample_jobs.hpp"

namespace qr::data::sample {
namespace {

Currency money(const char* text) {
    return *Currency::parseDecimal(text);
}
Variant moneyOrNull(const char* text) {
    return text ? Variant(money(text)) : Variant::null();
}

const char* const kCrLf = "\r\n";

std::string lines(std::initializer_list<const char*> parts) {
    std::string out;
    for (const char* part : parts) {
        if (!out.empty())
            out += kCrLf;
        out += part;
    }
    return out;
}

std::vector<GlassProduct> medicalOfficeGlass() {
    const char* nw = "Northwest Glass Fabricators";
    return {
        {"GL-1", "1\" Insulated Low-E Clear", nw, 1.0, "Annealed", 14.85, 3.0},
        {"GL-2", "1\" Insulated Low-E Clear", nw, 1.0, "Heat Strengthened", 18.40, 3.0},
        {"GL-3", "1\" Insulated Low-E Clear", nw, 1.0, "Tempered", 21.75, 3.0},
        {"SP-1", "1\" Insulated Spandrel Warm Gray", nw, 1.0, "Spandrel", 16.20, 3.0},
        {"PN-1", "1\" Insulated Aluminum Panel", "Cascade Panel Systems", 1.0, "Panel", 24.50, 4.0},
        {"VT-1", "1\" Insulated Low-E Vent Lite", nw, 1.0, "Vent", 26.00, 3.0},
        {"LM-1", "9/16\" Laminated Clear Safety", "Columbia Safety Glass", 0.5625, "Laminated",
         28.90, 3.0},
        {"DR-1", "1/4\" Clear Tempered", nw, 0.25, "Tempered", 12.60, 2.0},
        {"DR-2", "1\" Insulated Low-E Clear", nw, 1.0, "Tempered", 23.10, 3.0},
        {"TM-1", "1/4\" Clear Tempered", nw, 0.25, "Tempered", 9.75, 2.0},
    };
}

std::vector<ElevationPlan> medicalOfficeElevations() {
    return {
        {"E1",
         "North Entrance",
         "storefront",
         1,
         "240",
         "120",
         {{"A", "GL-3", "Frame", "34 3/4", "83 1/8", "", 2},
          {"B", "GL-1", "Frame", "34 3/4", "22 7/16", "", 2},
          {"C", "GL-1", "Frame", "71 1/2", "22 7/16", "", 1},
          {"D", "DR-1", "Door", "26 5/8", "73 3/4", "", 2},
          {"E", "GL-1", "Frame", "48 1/4", "106 3/8", "", 2}}},
        {"E2",
         "North Storefront Bay",
         "storefront",
         3,
         "150 3/4",
         "156",
         {{"A", "GL-1", "Frame", "48 1/4", "96 5/8", "", 3},
          {"B", "GL-2", "Frame", "48 1/4", "22 7/16", "", 3},
          {"C", "SP-1", "Frame", "48 1/4", "30", "", 3}}},
        {"E3",
         "East Storefront",
         "storefront",
         2,
         "110",
         "144",
         {{"A", "GL-1", "Frame", "52 1/2", "96 5/8", "", 2},
          {"B", "GL-3", "Frame", "52 1/2", "18", "", 2},
          {"C", "PN-1", "Panel", "52 1/2", "24", "", 2},
          {"D", "GL-2", "Frame", "52 1/2", "22 7/16", "", 2}}},
        {"E4",
         "West Storefront",
         "storefront",
         2,
         "186 1/2",
         "132",
         {{"A", "GL-1", "Frame", "44 7/8", "96 5/8", "", 4},
          {"B", "GL-2", "Frame", "44 7/8", "22 7/16", "", 4},
          {"C", "LM-1", "Frame", "44 7/8", "48", "", 1}}},
        {"E5",
         "South Service Entrance",
         "storefront",
         1,
         "72",
         "120",
         {{"A", "DR-2", "Door", "30 1/8", "60", "", 1},
          {"B", "GL-3", "Frame", "18", "83 1/8", "", 1},
          {"C", "PN-1", "Panel", "42", "22 7/16", "", 1},
          {"D", "GL-3", "Frame", "12 1/8", "24", "", 1}}},
        {"C1",
         "North Curtain Wall",
         "curtain wall",
         1,
         "372",
         "168",
         {{"A", "GL-2", "Frame", "60", "84 15/16", "", 6},
          {"B", "SP-1", "Frame", "60", "42", "", 6},
          {"C", "VT-1", "Vent", "60", "30", "", 2},
          {"D", "GL-1", "Frame", "60", "30", "", 4},
          {"E", "PN-1", "Panel", "60", "12", "", 2}}},
        {"C2",
         "Corner Curtain Wall",
         "curtain wall",
         2,
         "112 3/8",
         "168",
         {{"A", "GL-2", "Frame", "54 3/16", "84 15/16", "", 2},
          {"B", "SP-1", "Frame", "54 3/16", "42", "", 2},
          {"C", "VT-1", "Vent", "54 3/16", "30", "", 1},
          {"D", "GL-2", "Frame", "54 3/16", "24", "30 1/2", 1}}},
        {"C3",
         "East Curtain Wall",
         "curtain wall",
         1,
         "298",
         "168",
         {{"A", "GL-2", "Frame", "60", "84 15/16", "", 4},
          {"B", "SP-1", "Frame", "60", "42", "", 4},
          {"C", "PN-1", "Panel", "24", "126", "", 2},
          {"D", "VT-1", "Vent", "60", "30", "", 1}}},
        {"C4",
         "Stair Tower Curtain Wall",
         "curtain wall",
         1,
         "100",
         "252",
         {{"A", "GL-3", "Frame", "48", "120 15/16", "", 2},
          {"B", "GL-3", "Frame", "48", "60", "", 2},
          {"C", "GL-2", "Frame", "48", "36 1/2", "48 1/4", 2},
          {"D", "SP-1", "Frame", "48", "24", "", 2}}},
        {"W1",
         "Punched Window Type A",
         "window",
         8,
         "48 1/2",
         "104",
         {{"A", "GL-1", "Frame", "46 3/4", "58 1/2", "", 1},
          {"B", "VT-1", "Vent", "46 3/4", "24", "", 1},
          {"C", "SP-1", "Frame", "46 3/4", "18", "", 1}}},
        {"W2",
         "Punched Window Type B",
         "window",
         6,
         "72",
         "78",
         {{"A", "GL-1", "Frame", "34 1/4", "58 1/2", "", 2},
          {"B", "GL-2", "Frame", "70 1/2", "16", "", 1}}},
        {"I1",
         "Interior Reception Storefront",
         "interior",
         1,
         "190",
         "108",
         {{"A", "LM-1", "Frame", "72", "40", "", 1},
          {"B", "TM-1", "Frame", "36", "84", "", 3},
          {"C", "DR-1", "Door", "26 5/8", "73 3/4", "", 1},
          {"D", "TM-1", "Frame", "36", "18", "", 3}}},
    };
}

JobPlan medicalOffice() {
    JobPlan job;
    job.jobId = 1;
    job.name = "Riverside Medical Office Building";
    job.estimator = Variant("Dana Whitfield");
    job.status = Variant("Bid");
    job.finish = Variant("Class I Clear Anodized");
    job.bidDate = Variant(Date::fromParts(2024, 3, 14));
    job.notes = Variant(lines({"Bid per drawings A-201 through A-204 dated 02/12/2024 and "
                               "addendum 1.",
                               "Curtain wall anchors designed for 110 mph wind, exposure B."}));
    job.exclusions = Variant(lines({"Interior window sills and trim.", "Fire-rated glazing."}));
    job.sectionsBid = Variant(lines({"08 41 13 Aluminum-Framed Entrances and Storefronts",
                                     "08 44 13 Glazed Aluminum Curtain Walls",
                                     "08 51 13 Aluminum Windows", "08 80 00 Glazing"}));
    job.contractorId = 1;
    job.architectId = 2;
    job.stockTotal = money("78415.6");
    job.doorTotal = money("14860");
    job.miscPartsTotal = money("9284.1");
    job.stockOverride = Variant::null();
    job.doorOverride = moneyOrNull("15250"); // the door supplier's quote
    job.miscOverride = Variant::null();
    job.glassOverride = moneyOrNull("48900"); // the glass supplier's lump-sum quote
    job.laborOverride = Variant::null();
    job.addToLabor = money("1200");
    job.addToMaterial = money("850");
    job.subcontractorCosts = money("4500");
    job.rentalCosts = money("2750");
    job.otherCosts = money("600");
    job.rates = {18, 15, 10, 22, 4.5, 2.5, 8.4, 8.4, 0, 0, 8.4};
    job.totalJoints = 412;
    job.cuts = 968;
    job.glass = medicalOfficeGlass();
    job.elevations = medicalOfficeElevations();
    job.addedLabor = {{"Swing stage setup and moves", 6, Currency()},
                      {"Final wash of glass, both sides", 12, Currency()},
                      {"Field water test of curtain wall (third party)", 0, money("850")},
                      {"Shop drawing and permit coordination", 4, Currency()},
                      {"Punch list allowance", 0, Currency()}};
    job.miscLaborRate = money("45");
    job.framingSystems = {
        {"Series 450T thermal storefront, 2\" x 4 1/2\", center set",
         lines({"Clear anodized, Class I.", "Steel reinforced door jambs at E1 and E5."})},
        {"Series 1600 captured curtain wall, 2 1/2\" x 7 1/2\"",
         lines({"Pressure plates with snap covers.", "Vents: 4\" projected, top hung."})},
        {"Series 350 medium stile entrances", "Continuous hinges, panic devices by others."},
        {"Series 8225 punched windows", "Receptor and subsill at every opening."},
    };
    return job;
}

JobPlan dentalStorefront() {
    JobPlan job;
    job.jobId = 2;
    job.name = "Maple Street Dental";
    job.estimator = Variant("Dana Whitfield");
    job.status = Variant("Awarded");
    job.finish = Variant("Dark Bronze Anodized");
    job.bidDate = Variant(Date::fromParts(2024, 4, 2));
    job.notes = Variant("Tenant improvement; existing storefront removed by others.");
    job.exclusions = Variant("   ");
    job.sectionsBid = Variant("08 41 13 Aluminum-Framed Entrances and Storefronts");
    job.contractorId = 4;
    job.architectId = 2;
    job.stockTotal = money("6420.3");
    job.doorTotal = money("4980");
    job.miscPartsTotal = money("812.45");
    job.stockOverride = Variant::null();
    job.doorOverride = Variant::null();
    job.miscOverride = moneyOrNull("0"); // parts furnished by the owner
    job.glassOverride = Variant::null();
    job.laborOverride = Variant::null();
    job.addToLabor = Currency();
    job.addToMaterial = money("125.5");
    job.subcontractorCosts = Currency();
    job.rentalCosts = money("380");
    job.otherCosts = Currency();
    job.rates = {20, 15, 10, 25, 4.5, 0, 8.4, 8.4, 0, 0, 8.4};
    job.totalJoints = 36;
    job.cuts = 88;
    job.glass = {
        {"GL-1", "1\" Insulated Low-E Clear", "Northwest Glass Fabricators", 1.0, "Annealed", 15.10,
         3.0},
        {"GL-3", "1\" Insulated Low-E Clear", "Northwest Glass Fabricators", 1.0, "Tempered", 22.40,
         3.0},
        {"DR-1", "1/4\" Clear Tempered", "Northwest Glass Fabricators", 0.25, "Tempered", 12.60,
         2.0},
    };
    job.elevations = {
        {"E1",
         "Entrance",
         "storefront",
         1,
         "96",
         "120",
         {{"A", "GL-3", "Frame", "22 3/8", "83 1/8", "", 2},
          {"B", "DR-1", "Door", "26 5/8", "73 3/4", "", 1},
          {"C", "GL-1", "Frame", "94", "30 7/8", "", 1}}},
        {"E2",
         "Storefront",
         "storefront",
         2,
         "120",
         "120",
         {{"A", "GL-1", "Frame", "58 1/16", "88 1/2", "", 2},
          {"B", "GL-1", "Frame", "58 1/16", "27", "", 2}}},
    };
    job.addedLabor = {{"After-hours installation premium", 8, Currency()},
                      {"Temporary plywood closure", 0, money("275")}};
    job.miscLaborRate = money("45");
    job.framingSystems = {
        {"Series 450T thermal storefront, 2\" x 4 1/2\", center set", "Dark bronze anodized."}};
    return job;
}

JobPlan pendingRetrofit() {
    JobPlan job;
    job.jobId = 3;
    job.name = "Harbor Warehouse Office Retrofit";
    job.estimator = Variant::null();
    job.status = Variant::null();
    job.finish = Variant::null();
    job.bidDate = Variant::null();
    job.notes = Variant::null();
    job.exclusions = Variant::null();
    job.sectionsBid = Variant::null();
    job.contractorId = 77; // a contractor that is not in the customer list
    job.architectId = 3;   // an architect with most fields Null
    job.stockOverride = job.doorOverride = job.miscOverride = job.glassOverride =
        job.laborOverride = Variant::null();
    job.rates = {};
    return job;
}

} // namespace

const std::vector<JobPlan>& sampleJobs() {
    static const std::vector<JobPlan> jobs{medicalOffice(), dentalStorefront(), pendingRetrofit()};
    return jobs;
}

const std::vector<CustomerPlan>& sampleCustomers() {
    static const std::vector<CustomerPlan> customers{
        {1, Variant("Hartwell Construction Group"), Variant("Renee Okafor"),
         Variant("(360) 555-0182"), Variant("(360) 555-0183"), Variant("1400 Columbia Way"),
         Variant("Suite 300"), Variant("Vancouver, WA 98660")},
        {2, Variant("Linden & Shaw Architects"), Variant("Paul Linden, AIA"),
         Variant("(503) 555-0127"), Variant("(503) 555-0128"), Variant("812 SW Alder Street"),
         Variant(""), Variant("Portland, OR 97205")},
        {3, Variant("Bayside Design Studio"), Variant::null(), Variant::null(), Variant::null(),
         Variant("PO Box 4410"), Variant::null(), Variant::null()},
        {4, Variant("Alder Creek Builders"), Variant("Sam Ortiz"), Variant("(360) 555-0164"),
         Variant::null(), Variant("220 Main Street"), Variant::null(),
         Variant("Battle Ground, WA 98604")},
    };
    return customers;
}

} // namespace qr::data::sample
