#include <string>

#include <kestra/database/my_recordset_ptr.h>

#include "command.h"
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

/// Takes an option that has a value; false for any other word.
bool takeOption(const std::string& option, const std::string& value, Request& request) {
    struct {
        const char* name;
        std::string Request::*text;
    } const options[] = {
        {"--html", &Request::html}, {"--where", &Request::where}, {"--sort", &Request::sort}};
    for (const auto& known : options) {
        if (option != known.name) continue;
        request.*known.text = value;
        return true;
    }
    return false;
}

/// Empty when the command line is sound.
std::string readRequest(Arguments arguments, Request& request) {
    bool areOptions = true;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& word = arguments[i];
        if (areOptions && word == "--") {
            areOptions = false;
        } else if (areOptions && word == "--csv") {
            request.csv = true;
        } else if (areOptions && word.starts_with("--")) {
            if (i + 1 == arguments.size()) return "valeur absente derrière « " + word + " »";
            if (!takeOption(word, arguments[++i], request)) return "option inconnue « " + word + " »";
        } else if (request.database.empty()) {
            request.database = word;
        } else if (request.table.empty()) {
            request.table = word;
        } else {
            return "« " + word + " » est de trop";
        }
    }
    if (request.csv && !request.html.empty()) return "--csv ou --html, pas les deux";
    return request.database.empty() ? "il manque la base de données" : "";
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
    Request request;
    if (const std::string fault = readRequest(arguments, request); !fault.empty())
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
