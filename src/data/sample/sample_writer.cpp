#include "data/sample/sample_writer.hpp"

#include "data/sample/glass_sizes.hpp"
#include "data/sample/sample_rows.hpp"
#include "data/schema.hpp"
#include "platform/core/convert.hpp"
#include "platform/core/error.hpp"

namespace qr::data::sample {
namespace {

using Row = std::vector<Variant>;

void insertRows(db::Connection& connection, const std::string& table,
                const std::vector<std::string>& columns, const std::vector<Row>& rows) {
    std::string names, marks;
    for (const std::string& column : columns) {
        names += (names.empty() ? "" : ", ") + column;
        marks += marks.empty() ? "?" : ", ?";
    }
    connection.executeMany("INSERT INTO " + table + " (" + names + ") VALUES (" + marks + ")",
                           rows);
}

Variant text(const std::string& value) {
    return Variant(value);
}
Variant whole(int value) {
    return Variant(static_cast<std::int32_t>(value));
}

std::string sampleJobIds() {
    std::string ids;
    for (const JobPlan& job : sampleJobs())
        ids += (ids.empty() ? "" : ", ") + std::to_string(job.jobId);
    return ids;
}

// ---- master database ---------------------------------------------------------------------

void writeMaster(db::Connection& master) {
    createTables(master, masterTables());
    db::Transaction transaction(master);
    for (const char* table : {"Company", "Customers", "SystemDefaults", "Users", "UserSettings"}) {
        const char* key = std::string(table) == "Company"     ? "CompanyID"
                          : std::string(table) == "Customers" ? "CustID"
                                                              : "UserID";
        master.execute(std::string("DELETE FROM ") + table + " WHERE " + key + " IN (1, 2, 3, 4)");
    }
    insertRows(master, "Company",
               {"CompanyID", "sName", "sPhone", "sFax", "sEmail", "saddress1", "saddress2",
                "saddress3", "sWebAddress", "sContractorLic"},
               {{whole(1), text("Cascade Glass & Glazing, Inc."), text("(360) 555-0100"),
                 text("(360) 555-0101"), text("bids@cascadeglazing.example"),
                 text("5120 NE 88th Street"), text("Building C"), text("Vancouver, WA 98665"),
                 text("www.cascadeglazing.example"), text("CASCAGG873RQ")}});

    std::vector<Row> customers;
    for (const CustomerPlan& c : sampleCustomers())
        customers.push_back({whole(c.id), c.company, c.contact, c.phone, c.fax, c.address1,
                             c.address2, c.address3});
    insertRows(
        master, "Customers",
        {"CustID", "sCompany", "sContact", "sPhone", "sFax", "sAddress1", "sAddress2", "sAddress3"},
        customers);

    // The estimator has a phone and an e-mail of her own; the second user has neither, so
    // headings fall back to the firm's.
    insertRows(master, "Users", {"UserID", "sName", "sPhone", "sEmail"},
               {{whole(kSampleUserId), text("Dana Whitfield"), text("(360) 555-0148"),
                 text("dana.whitfield@cascadeglazing.example")},
                {whole(2), text("Marcus Lee"), text(""), text("")}});
    insertRows(master, "UserSettings", {"UserID", "sName", "iValue"},
               {{whole(kSampleUserId), text("LblTop"), whole(120)},
                {whole(kSampleUserId), text("LblLeft"), whole(-60)}});
    const std::string crlf = "\r\n";
    insertRows(master, "SystemDefaults", {"UserID", "mcompanyexclusions", "mcompanynotes"},
               {{whole(kSampleUserId),
                 text("Performance and payment bonds." + crlf +
                      "Structural steel supports, blocking and backing." + crlf +
                      "Final cleaning beyond one wash of the glass."),
                 text("  Prices firm for 30 days." + crlf +
                      "Glass lead time 6 to 8 weeks after approved shop drawings.  ")},
                {whole(2), Variant::null(), Variant::null()}});
    transaction.commit();
}

// ---- vendor database: job tables ---------------------------------------------------------

Row jobSummaryRow(const JobPlan& job, const JobFigures& figures) {
    const MarkupRates& r = job.rates;
    return {whole(job.jobId),
            text(job.name),
            job.estimator,
            job.status,
            job.finish,
            job.bidDate,
            Variant(figures.area),
            Variant(figures.perimeter),
            whole(job.totalJoints),
            whole(job.cuts),
            job.notes,
            job.exclusions,
            job.sectionsBid,
            whole(job.contractorId),
            whole(job.architectId),
            Variant(job.stockTotal),
            job.stockOverride,
            Variant(job.doorTotal),
            job.doorOverride,
            Variant(job.miscPartsTotal),
            job.miscOverride,
            Variant(figures.glassTotal),
            job.glassOverride,
            Variant(figures.laborTotal),
            job.laborOverride,
            Variant(job.addToLabor),
            Variant(job.addToMaterial),
            Variant(job.subcontractorCosts),
            Variant(job.rentalCosts),
            Variant(job.otherCosts),
            Variant(r.stockMarkup),
            Variant(r.glassMarkup),
            Variant(r.otherMarkup),
            Variant(r.laborMarkup),
            Variant(r.metalSurcharge),
            Variant(r.glassSurcharge),
            Variant(r.stockTax),
            Variant(r.glassTax),
            Variant(r.otherCostsTax),
            Variant(r.laborTax),
            Variant(r.surchargeTax)};
}

std::vector<std::string> columnsOf(const TableDef& table) {
    std::vector<std::string> names;
    for (const ColumnDef& column : table.columns)
        names.push_back(column.name);
    return names;
}

const TableDef& vendorTable(const std::string& name) {
    for (const TableDef& table : vendorTables())
        if (table.name == name)
            return table;
    throw Error::component("SampleWriter", "No vendor table " + name);
}

void writeJobTables(db::Connection& vendor, const JobPlan& job) {
    const JobFigures figures = jobFigures(job);
    insertRows(vendor, "JobSummary", columnsOf(vendorTable("JobSummary")),
               {jobSummaryRow(job, figures)});

    std::vector<Row> labor;
    int n = 0;
    for (const AddedLabor& item : job.addedLabor)
        labor.push_back({whole(job.jobId * 100 + ++n), whole(job.jobId), text(item.item),
                         Variant(item.hours), Variant(item.fixedAmount)});
    insertRows(vendor, "JobLabor", columnsOf(vendorTable("JobLabor")), labor);
    if (job.miscLaborRate)
        insertRows(vendor, "JobMainLabor", {"JobID", "cMiscRate"},
                   {{whole(job.jobId), Variant(*job.miscLaborRate)}});

    std::vector<Row> elevations;
    n = 0;
    for (const ElevationPlan& e : job.elevations) {
        ++n;
        elevations.push_back({whole(job.jobId * 100 + n), whole(job.jobId),
                              text(e.code + " " + e.name), text(e.code), whole(e.quantity),
                              whole(n), Variant(sixteenthsOf(e.width) / 16.0),
                              Variant(sixteenthsOf(e.height) / 16.0), Variant(glassPerimeter(e))});
    }
    insertRows(vendor, "Elevations", columnsOf(vendorTable("Elevations")), elevations);

    std::vector<Row> glass;
    n = 0;
    for (const GlassLine& line : glassLines(job)) {
        const GlassProduct& product = *line.product;
        glass.push_back({whole(job.jobId * 1000 + ++n), whole(job.jobId), text(product.description),
                         text(product.supplier), Variant(product.thickness), text(product.glassType),
                         text(product.typeLabel), text(line.category), whole(line.quantity),
                         text(line.width), text(line.leftHeight), text(line.blockSize()),
                         Variant(line.raked()), Variant(line.blockArea), Variant(product.pricePerSqFt),
                         Variant(line.priceTotal), Variant(product.minBlockArea),
                         Variant(line.minimumMet)});
    }
    insertRows(vendor, "JobGlass", columnsOf(vendorTable("JobGlass")), glass);
}

// ---- vendor database: the report tables the host fills before a print --------------------

std::vector<Row> reportRows(ReportTableKind kind, const JobPlan& job) {
    std::vector<Row> rows;
    switch (kind) {
    case ReportTableKind::Labor:
        for (const LaborLine& l : laborLines(job))
            rows.push_back({text(l.elevationName), whole(l.quantity), whole(l.sort),
                            Variant(l.fabHours), Variant(l.fabTotal), Variant(l.installHours),
                            Variant(l.installTotal), Variant(l.miscHours), Variant(l.miscTotal),
                            Variant(l.entFabHours), Variant(l.entFabTotal),
                            Variant(l.entInstallHours), Variant(l.entInstallTotal),
                            Variant(l.glazHours), Variant(l.glazTotal), Variant(l.elevationTotal)});
        break;
    case ReportTableKind::Markup: {
        if (job.elevations.empty())
            break; // nothing priced yet: the host leaves it empty
        const MarkupFigures m = jobFigures(job).markup;
        Row row;
        for (Currency figure :
             {m.totalMetal, m.totalLabor, m.totalOutside, m.metalSurcharge, m.metalPlusSurcharge,
              m.glassSurcharge, m.glassPlusSurcharge, m.totalMaterial, m.totalSurcharge,
              m.materialMarkup, m.laborMarkup, m.outsideMarkup, m.totalMarkup, m.totalBeforeTax,
              m.salesTax, m.grandTotal})
            row.push_back(Variant(figure.toDouble()));
        rows.push_back(std::move(row));
        break;
    }
    case ReportTableKind::FramingSystems:
        for (const auto& [description, notes] : job.framingSystems)
            rows.push_back({text(description), text(notes)});
        break;
    case ReportTableKind::GlassTakeoff:
        for (const GlassLine& g : glassLines(job))
            rows.push_back(
                {text(g.elevation->code + " " + g.elevation->name), whole(g.elevationSort),
                 text(g.product->description), text(g.product->typeLabel),
                 text(g.product->typeLabel), whole(g.quantity), text(g.width), text(g.leftHeight),
                 text(g.rightHeight), Variant(g.product->pricePerSqFt), Variant(g.area),
                 Variant(roundHalfEven(g.area * g.quantity * g.product->pricePerSqFt, 2)),
                 Variant(g.priceTotal), text(g.blockSize()), Variant(g.blockArea)});
        break;
    case ReportTableKind::GlassToOrder:
    case ReportTableKind::GlassCut:
        // One row per lite of one occurrence of the elevation, labelled E1-A1, E1-A2, ...
        for (const GlassLine& g : glassLines(job)) {
            for (int n = 1; n <= g.lite->perElevation; ++n) {
                const std::string label = g.label() + std::to_string(n);
                // The order's position is within the elevation (A1); the code is beside it.
                if (kind == ReportTableKind::GlassToOrder)
                    rows.push_back({text(g.product->description), text(g.lite->partType),
                                    text(g.product->typeLabel), text(g.product->glassType),
                                    text(g.width), text(g.leftHeight), text(g.rightHeight),
                                    text(g.lite->mark + std::to_string(n)), text(g.elevation->code),
                                    whole(g.elevation->quantity), Variant(g.area),
                                    Variant(g.blockArea)});
                else
                    rows.push_back({text(job.name),
                                    text(g.elevation->code + " " + g.elevation->name),
                                    whole(g.elevationSort), text(label), text(g.product->description),
                                    text(g.product->glassType), text(g.lite->partType), text(g.width),
                                    text(g.leftHeight), text(g.rightHeight)});
            }
        }
        break;
    }
    return rows;
}

std::vector<std::string> writeVendor(db::Connection& vendor) {
    createTables(vendor, vendorTables());
    std::vector<TableDef> reportTables;
    for (const JobPlan& job : sampleJobs())
        for (ReportTableKind kind : kReportTableKinds)
            reportTables.push_back(reportTableDef(kind, reportTableName(kind, job.jobId)));
    createTables(vendor, reportTables);

    db::Transaction transaction(vendor);
    const std::string ids = sampleJobIds();
    for (const char* table : {"JobSummary", "JobLabor", "JobMainLabor", "Elevations", "JobGlass"})
        vendor.execute(std::string("DELETE FROM ") + table + " WHERE JobID IN (" + ids + ")");
    vendor.execute("DELETE FROM Vendor WHERE VendorID=1");
    insertRows(vendor, "Vendor", {"VendorID", "sName"},
               {{whole(1), text("Pacific Architectural Aluminum")}});

    std::vector<std::string> filled;
    for (const JobPlan& job : sampleJobs()) {
        writeJobTables(vendor, job);
        for (ReportTableKind kind : kReportTableKinds) {
            const TableDef table = reportTableDef(kind, reportTableName(kind, job.jobId));
            vendor.execute("DELETE FROM " + table.name);
            insertRows(vendor, table.name, columnsOf(table), reportRows(kind, job));
            filled.push_back(table.name);
        }
    }
    transaction.commit();
    return filled;
}

} // namespace

std::vector<std::string> writeSample(db::Connection& vendor, db::Connection& master) {
    writeMaster(master);
    return writeVendor(vendor);
}

} // namespace qr::data::sample
