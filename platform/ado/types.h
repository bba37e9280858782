#pragma once
#include <cstdint>

/// The numbers of ADO: results, enumerations, field types. They are ADO's own, so that what a host stores,
/// prints or passes on stays valid on either engine.
namespace ado20 {

/// The result of a COM call, 32 bits on every system: negative for a failure.
using HResult = std::int32_t;

constexpr HResult hresult(std::uint32_t code) {
    return static_cast<HResult>(code);
}

constexpr HResult hrOk = 0;
constexpr HResult hrFail = hresult(0x80004005);            ///< E_FAIL
constexpr HResult hrNotImplemented = hresult(0x80004001);  ///< E_NOTIMPL
constexpr HResult hrPointer = hresult(0x80004003);         ///< E_POINTER: a null interface pointer was used
constexpr HResult hrOutOfMemory = hresult(0x8007000E);     ///< E_OUTOFMEMORY
constexpr HResult hrTypeMismatch = hresult(0x80020005);    ///< DISP_E_TYPEMISMATCH
constexpr HResult hrOverflow = hresult(0x8002000A);        ///< DISP_E_OVERFLOW
constexpr HResult hrParameterMissing =
    hresult(0x80020004);                               ///< DISP_E_PARAMNOTFOUND, the "not given" argument
constexpr HResult hrMediumFull = hresult(0x80030070);  ///< STG_E_MEDIUMFULL
constexpr HResult hrClassNotRegistered = hresult(0x80040154);  ///< REGDB_E_CLASSNOTREG
constexpr HResult hrPermissionDenied = hresult(0x80040E09);    ///< DB_SEC_E_PERMISSIONDENIED
constexpr HResult hrBadBookmark = hresult(0x80040E0E);         ///< DB_E_BADBOOKMARK
constexpr HResult hrErrorsInCommand = hresult(0x80040E14);     ///< DB_E_ERRORSINCOMMAND
constexpr HResult hrDatabaseExists = hresult(0x80040E17);  ///< the file of a new database is there already
constexpr HResult hrErrorsOccurred =
    hresult(0x80040E21);  ///< DB_E_ERRORSOCCURRED: a value does not fit its field
constexpr HResult hrDeletedRow = hresult(0x80040E23);          ///< DB_E_DELETEDROW
constexpr HResult hrIntegrityViolation = hresult(0x80040E2F);  ///< DB_E_INTEGRITYVIOLATION
constexpr HResult hrNoTable = hresult(0x80040E37);             ///< DB_E_NOTABLE
// ADO's own errors.
constexpr HResult hrInvalidArgument = hresult(0x800A0BB9);      ///< adErrInvalidArgument, 3001
constexpr HResult hrNoCurrentRecord = hresult(0x800A0BCD);      ///< adErrNoCurrentRecord, 3021
constexpr HResult hrIllegalOperation = hresult(0x800A0C93);     ///< adErrIllegalOperation, 3219
constexpr HResult hrFeatureNotAvailable = hresult(0x800A0CB3);  ///< adErrFeatureNotAvailable, 3251
constexpr HResult hrItemNotFound = hresult(0x800A0CC1);         ///< adErrItemNotFound, 3265
constexpr HResult hrObjectClosed = hresult(0x800A0E78);         ///< adErrObjectClosed, 3704
constexpr HResult hrObjectOpen = hresult(0x800A0E79);           ///< adErrObjectOpen, 3705
constexpr HResult hrProviderNotFound = hresult(0x800A0E7A);     ///< adErrProviderNotFound, 3706
constexpr HResult hrInvalidConnection = hresult(0x800A0E7D);    ///< adErrInvalidConnection, 3709

enum CursorTypeEnum {
    adOpenUnspecified = -1,
    adOpenForwardOnly = 0,
    adOpenKeyset = 1,
    adOpenDynamic = 2,
    adOpenStatic = 3,
};

enum LockTypeEnum {
    adLockUnspecified = -1,
    adLockReadOnly = 1,
    adLockPessimistic = 2,
    adLockOptimistic = 3,
    adLockBatchOptimistic = 4,
};

enum CursorLocationEnum { adUseServer = 2, adUseClient = 3 };

/// Access mode of a connection; `adModeWrite` (2) is the bit that says whether it may be written through.
enum ConnectModeEnum {
    adModeUnknown = 0,
    adModeRead = 1,
    adModeWrite = 2,
    adModeReadWrite = 3,
    adModeShareDenyRead = 4,
    adModeShareDenyWrite = 8,
    adModeShareExclusive = 12,
    adModeShareDenyNone = 16,
};

enum ObjectStateEnum { adStateClosed = 0, adStateOpen = 1 };

/// What the source text of a recordset is. Of an unknown or unspecified one, a name of a table or view is
/// taken as that, anything else as a statement.
enum CommandTypeEnum {
    adCmdUnspecified = -1,
    adCmdText = 1,
    adCmdTable = 2,
    adCmdUnknown = 8,
    adCmdTableDirect = 512,
};
constexpr long adOptionUnspecified = -1;
constexpr long adExecuteNoRecords = 128;

/// The special positions that a recordset has beside 1..RecordCount.
enum PositionEnum { adPosUnknown = -1, adPosBOF = -2, adPosEOF = -3 };

/// The standard bookmarks, passed as 32-bit integers.
enum BookmarkEnum { adBookmarkCurrent = 0, adBookmarkFirst = 1, adBookmarkLast = 2 };

enum SearchDirectionEnum { adSearchBackward = -1, adSearchForward = 1 };
enum AffectEnum { adAffectCurrent = 1 };
enum EditModeEnum { adEditNone = 0, adEditInProgress = 1, adEditAdd = 2, adEditDelete = 4 };

/// The one schema rowset that the embedded engine has: tables and views, with TABLE_CATALOG, TABLE_SCHEMA,
/// TABLE_NAME, TABLE_TYPE ("TABLE", "VIEW", "SYSTEM TABLE"), TABLE_GUID, DESCRIPTION, TABLE_PROPID,
/// DATE_CREATED, DATE_MODIFIED, in order of type and name; and the one of columns (TABLE_NAME, COLUMN_NAME,
/// ORDINAL_POSITION, DATA_TYPE, IS_NULLABLE, CHARACTER_MAXIMUM_LENGTH).
enum SchemaEnum { adSchemaColumns = 4, adSchemaTables = 20 };

enum CursorOptionEnum {
    adHoldRecords = 0x100,
    adMovePrevious = 0x200,
    adAddNew = 0x1000400,
    adDelete = 0x1000800,
    adUpdate = 0x1008000,
    adBookmark = 0x2000,
    adApproxPosition = 0x4000,
    adUpdateBatch = 0x10000,
    adResync = 0x20000,
    adNotify = 0x40000,
    adFind = 0x80000,
};

enum DataTypeEnum {
    adEmpty = 0,
    adSmallInt = 2,
    adInteger = 3,
    adSingle = 4,
    adDouble = 5,
    adCurrency = 6,
    adDate = 7,
    adBoolean = 11,
    adDecimal = 14,
    adUnsignedTinyInt = 17,
    adBigInt = 20,
    adGUID = 72,
    adBinary = 128,
    adChar = 129,
    adWChar = 130,
    adNumeric = 131,
    adDBDate = 133,
    adDBTimeStamp = 135,
    adVarChar = 200,
    adLongVarChar = 201,
    adVarWChar = 202,
    adLongVarWChar = 203,
    adVarBinary = 204,
    adLongVarBinary = 205,
};

/// Bits of `Field::GetAttributes`.
enum FieldAttributeEnum {
    adFldMayDefer = 0x2,
    adFldUpdatable = 0x4,
    adFldFixed = 0x10,
    adFldIsNullable = 0x20,
    adFldMayBeNull = 0x40,
    adFldLong = 0x80,
    adFldRowID = 0x100,
    adFldKeyColumn = 0x8000,
};

}  // namespace ado20
