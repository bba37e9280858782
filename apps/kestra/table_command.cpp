#include <string>

#include <kestra/database/my_recordset_ptr.h>

#include "options.h"
#include "progress_line.h"
#include "table_rows.h"
#include "table_writers.h"

namespace {

/// Progress is shown for tables above this number of records.
constexpr std::int64_t largeTable = 20'000;

struct Request {
    std::string database, table, html, where, sort;
    bool csv = false;
};

/// Empty when the command line is sound.
std::string readRequest(const Options& options, Request& request) {
    if (!options.fault().empty()) return options.fault();
    request.database = options.word(0);
    request.table = options.optionalWord(1);
    request.html = options.text("--html");
    request.where = options.text("--where");
    request.sort = options.text("--sort");
    request.csv = options.has("--csv");
    return request.csv && !request.html.empty() ? "--csv ou --html, pas les deux" : "";
}

int fail(Terminal& terminal, const std::string& what, std::string_view why) {
    terminal.error("kestra table : « " + what + " » : " + std::string(why) + '\n');
    return exitFailed;
}

/// The tables and queries of a database, one a line.
int listTables(const _ConnectionPtr& connection, const Request& request, Terminal& terminal) {
    MyRecordsetPtr schema(connection->OpenSchema(ado20::adSchemaTables));
    std::string text;
    for (long moved = 0; moved >= 0 && schema.Eof() == 0; moved = schema.MoveNext()) {
        const std::string type = schema.GetStrValue("TABLE_TYPE");
        if (type == "TABLE") text += "table    ";
        if (type == "VIEW") text += "requête  ";
        if (type == "TABLE" || type == "VIEW") text += std::string(schema.GetStrValue("TABLE_NAME")) + '\n';
    }
    if (schema.m_LastError.m_Code != 0)
        return fail(terminal, request.database, schema.m_LastError.m_Description.view());
    terminal.output(text);
    return exitDone;
}

int showTable(MyRecordsetPtr& records, const Request& request, Terminal& terminal) {
    ProgressLine progress(terminal, "Table");
    TableRows rows(records.m_pRecordset);
    const std::int64_t count = rows.count();
    const bool isLarge = progress.isWatched() && count > largeTable;
    const RowDone onRow = [&](std::int64_t row) {
        if (isLarge) progress.show(static_cast<int>(row * 100 / count));
    };
    if (!request.html.empty()) {
        if (!writeHtml(rows, request.table, request.html, onRow))
            return fail(terminal, request.html, "écriture impossible");
    } else if (request.csv) {
        writeCsv(rows, terminal, onRow);
    } else {
        writeColumns(rows, terminal, onRow);
    }
    return exitDone;
}

int openAndShow(const _ConnectionPtr& connection, const Request& request, Terminal& terminal) {
    MyRecordsetPtr records;
    const auto failure = [&](const std::string& what) {
        return fail(terminal, what, records.m_LastError.m_Description.view());
    };
    if (records.Open(request.table.c_str(), connection, ado20::adCmdTable, ado20::adOpenForwardOnly,
                     ado20::adLockReadOnly) < 0)
        return failure(request.table);
    if (!request.where.empty() && records.Filter(request.where.c_str()) < 0) return failure(request.where);
    if (!request.sort.empty() && records.Sort(request.sort.c_str()) < 0) return failure(request.sort);
    return showTable(records, request, terminal);
}

int run(Arguments arguments, Terminal& terminal) {
    const Options options(arguments, {"--html", "--where", "--sort"}, {"--csv"},
                          {"la base de données", "la table"}, {.absent = 1});
    Request request;
    if (const std::string fault = readRequest(options, request); !fault.empty())
        return refuseUsage(tableCommand, fault, terminal);
    Database database;
    const _ConnectionPtr connection =
        database.OpenDB(request.database.c_str(), Database::readOnly, ado20::adUseClient);
    if (!connection) return fail(terminal, request.database, Database::m_LastError.m_Description.view());
    try {
        return request.table.empty() ? listTables(connection, request, terminal)
                                     : openAndShow(connection, request, terminal);
    } catch (const _com_error& error) {
        return fail(terminal, request.table.empty() ? request.database : request.table, error.Description());
    }
}

}  // namespace

const Command tableCommand = {
    "table", "montre une table d'une base de données",
    "Usage : kestra table BASE [TABLE] [OPTIONS]\n"
    "\n"
    "Montre les enregistrements d'une table ou d'une requête, en colonnes. Sans TABLE, cite\n"
    "les tables et les requêtes de la base. La base est ouverte en lecture seule.\n"
    "\n"
    "  --csv             valeurs séparées par « ; », les noms des champs en premier\n"
    "  --html FICHIER    listing paginé, dans un fichier\n"
    "  --where CRITERES  seulement les enregistrements qui répondent aux critères :\n"
    "                    CHAMP OPERATEUR VALEUR, joints par AND et OR; opérateurs = < >\n"
    "                    <= >= <> LIKE; textes entre ', dates entre #, * dans LIKE\n"
    "  --sort CHAMPS     dans l'ordre des champs : « NOM », « NOM DESC, NUM »\n"
    "  --                ce qui suit n'est pas une option\n",
    run};
