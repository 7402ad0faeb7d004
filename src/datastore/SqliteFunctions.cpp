#include "datastore/SqliteFunctions.h"

#include <QString>

#include <sqlite3.h>

#include <cstring>
#include <initializer_list>

namespace gm {

namespace {

// The statements behind the routines, prepared once per connection: searches call the routines
// once per row. The connection is closed with sqlite3_close, which refuses while any statement
// is alive, so the statements are finalized by the close notice; the holder itself goes with
// the last routine that uses it.
struct Routines {
    sqlite3* db = nullptr;
    sqlite3_stmt* party = nullptr;
    sqlite3_stmt* commodity = nullptr;
    sqlite3_stmt* debit = nullptr;
    int users = 0;

    void finalizeAll() {
        for (sqlite3_stmt** s : {&party, &commodity, &debit}) {
            sqlite3_finalize(*s);
            *s = nullptr;
        }
    }
    ~Routines() { finalizeAll(); }
};

const char* const kPartySql = "SELECT a.AccountName, c.CityName FROM ChartOfAccounts a "
                              "LEFT JOIN Parties p ON p.PartyId = a.AccountNo "
                              "LEFT JOIN Cities c ON c.CityId = p.CityId WHERE a.AccountNo = ?";
const char* const kCommoditySql = "SELECT CommodityName FROM Commodities WHERE CommodityId = ?";
const char* const kDebitSql =
    "SELECT COALESCE(SUM(COALESCE(Debit, 0) - COALESCE(Credit, 0)), 0) FROM LedgerEntries "
    "WHERE AccountNo = ? AND EntryDate <= ?";

// A statement ready for new values, or null after reporting the failure to the caller's SQL.
sqlite3_stmt* statement(sqlite3_context* ctx, sqlite3_stmt** slot, const char* sql) {
    auto* r = static_cast<Routines*>(sqlite3_user_data(ctx));
    if (!*slot &&
        sqlite3_prepare_v3(r->db, sql, -1, SQLITE_PREPARE_PERSISTENT, slot, nullptr) != SQLITE_OK) {
        sqlite3_result_error(ctx, sqlite3_errmsg(r->db), -1);
        *slot = nullptr;
        return nullptr;
    }
    sqlite3_reset(*slot);
    sqlite3_clear_bindings(*slot);
    return *slot;
}

// Runs the statement to its first row; false when there is none or on failure (then reported).
bool firstRow(sqlite3_context* ctx, sqlite3_stmt* st) {
    const int rc = sqlite3_step(st);
    if (rc == SQLITE_ROW)
        return true;
    if (rc != SQLITE_DONE)
        sqlite3_result_error(ctx, sqlite3_errmsg(sqlite3_db_handle(st)), -1);
    else
        sqlite3_result_null(ctx);
    return false;
}

void bindText(sqlite3_stmt* st, int index, sqlite3_value* v) {
    if (sqlite3_value_type(v) == SQLITE_NULL)
        sqlite3_bind_null(st, index);
    else
        sqlite3_bind_text(st, index, reinterpret_cast<const char*>(sqlite3_value_text(v)), -1,
                          SQLITE_TRANSIENT);
}

// The account's name, a hyphen and its party's city with no blanks, which is exactly what the
// party lists show; a party without a city is its bare name.
void funGetPartyName(sqlite3_context* ctx, int, sqlite3_value** argv) {
    auto* r = static_cast<Routines*>(sqlite3_user_data(ctx));
    sqlite3_stmt* st = statement(ctx, &r->party, kPartySql);
    if (!st)
        return;
    bindText(st, 1, argv[0]);
    if (firstRow(ctx, st)) {
        const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
        const auto* city = reinterpret_cast<const char*>(sqlite3_column_text(st, 1));
        if (!name) {
            sqlite3_result_null(ctx);
        } else if (!city) {
            sqlite3_result_text(ctx, name, -1, SQLITE_TRANSIENT);
        } else {
            const size_t n = std::strlen(name), c = std::strlen(city);
            auto* out = static_cast<char*>(sqlite3_malloc64(n + c + 2));
            if (!out) {
                sqlite3_result_error_nomem(ctx);
            } else {
                std::memcpy(out, name, n);
                out[n] = '-';
                std::memcpy(out + n + 1, city, c + 1);
                sqlite3_result_text(ctx, out, static_cast<int>(n + c + 1), sqlite3_free);
            }
        }
    }
    sqlite3_reset(st);
}

void funGetCommodity(sqlite3_context* ctx, int, sqlite3_value** argv) {
    auto* r = static_cast<Routines*>(sqlite3_user_data(ctx));
    sqlite3_stmt* st = statement(ctx, &r->commodity, kCommoditySql);
    if (!st)
        return;
    sqlite3_bind_value(st, 1, argv[0]);
    if (firstRow(ctx, st))
        sqlite3_result_value(ctx, sqlite3_column_value(st, 0));
    sqlite3_reset(st);
}

// Debits less credits of the account up to and including the day. Days are stored as
// 'yyyy-MM-dd'; a value that carries a time as well is cut to its day, so that a caller
// binding a date-and-time still counts the whole day.
void fungrnCurrentDebit(sqlite3_context* ctx, int, sqlite3_value** argv) {
    auto* r = static_cast<Routines*>(sqlite3_user_data(ctx));
    sqlite3_stmt* st = statement(ctx, &r->debit, kDebitSql);
    if (!st)
        return;
    bindText(st, 1, argv[0]);
    if (sqlite3_value_type(argv[1]) == SQLITE_NULL) {
        sqlite3_bind_null(st, 2);
    } else {
        const auto* day = reinterpret_cast<const char*>(sqlite3_value_text(argv[1]));
        const int len = sqlite3_value_bytes(argv[1]);
        const bool withTime =
            len > 10 && day[4] == '-' && day[7] == '-' && (day[10] == 'T' || day[10] == ' ');
        sqlite3_bind_text(st, 2, day, withTime ? 10 : len, SQLITE_TRANSIENT);
    }
    if (firstRow(ctx, st))
        sqlite3_result_double(ctx, sqlite3_column_double(st, 0));
    sqlite3_reset(st);
}

// The text with every letter's case folded, so that LIKE on both sides ignores case for
// every letter and not only for A to Z, as LIKE itself does. Names are mostly plain ASCII,
// which is folded on the bytes without a round trip through UTF-16.
void caseFold(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL) {
        sqlite3_result_null(ctx);
        return;
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(argv[0]));
    const int len = sqlite3_value_bytes(argv[0]);
    if (!text) {
        sqlite3_result_error_nomem(ctx);
        return;
    }
    bool ascii = true;
    for (int i = 0; i < len && ascii; ++i)
        ascii = static_cast<unsigned char>(text[i]) < 0x80;
    if (!ascii) {
        const QByteArray folded = QString::fromUtf8(text, len).toCaseFolded().toUtf8();
        sqlite3_result_text(ctx, folded.constData(), int(folded.size()), SQLITE_TRANSIENT);
        return;
    }
    auto* out = static_cast<char*>(sqlite3_malloc64(sqlite3_uint64(len) + 1));
    if (!out) {
        sqlite3_result_error_nomem(ctx);
        return;
    }
    for (int i = 0; i < len; ++i)
        out[i] = (text[i] >= 'A' && text[i] <= 'Z') ? char(text[i] - 'A' + 'a') : text[i];
    out[len] = '\0';
    sqlite3_result_text(ctx, out, len, sqlite3_free);
}

void releaseUser(void* p) {
    auto* r = static_cast<Routines*>(p);
    if (--r->users == 0)
        delete r;
}

int onTrace(unsigned type, void* p, void*, void*) {
    if (type == SQLITE_TRACE_CLOSE)
        static_cast<Routines*>(p)->finalizeAll();
    return 0;
}

} // namespace

void registerSqliteFunctions(sqlite3* handle) {
    if (!handle)
        return;
    auto* r = new Routines; // owned by the routines registered below, see releaseUser
    r->db = handle;
    struct Def {
        const char* name;
        int args;
        void (*fn)(sqlite3_context*, int, sqlite3_value**);
    };
    // Not deterministic: the answers follow the tables, so SQLite must not reuse them.
    const Def defs[] = {{"FunGetPartyName", 1, funGetPartyName},
                        {"FunGetCommodity", 1, funGetCommodity},
                        {"FungrnCurrentDebit", 2, fungrnCurrentDebit}};
    r->users = 1; // held here until every routine has taken its share
    bool any = false;
    for (const Def& d : defs) {
        ++r->users; // given back by SQLite through releaseUser, also when registering fails
        any |= sqlite3_create_function_v2(handle, d.name, d.args, SQLITE_UTF8, r, d.fn, nullptr,
                                          nullptr, releaseUser) == SQLITE_OK;
    }
    if (any)
        sqlite3_trace_v2(handle, SQLITE_TRACE_CLOSE, onTrace, r);
    releaseUser(r);
    // Folding reads nothing but its argument, so SQLite may work it out once for a bound
    // pattern.
    sqlite3_create_function_v2(handle, "CaseFold", 1,
                               SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS, nullptr,
                               caseFold, nullptr, nullptr, nullptr);
}

} // namespace gm
