// The code-generation tables: the set of ten tables, kept in record files.
//
// Owns the global names CgTab; for translation units with another owner: names.h.
#pragma once

#include <cstdint>

#include "lq_data/env/lq_base.h"
#include "lq_data/export.h"
#include "lq_data/memory.h"
#include "lq_data/pouh.h"
#include "lq_data/record_file.h"
#include "lq_data/scanner.h"
#include "lq_data/types.h"

class CPouRef;

// ---------------------------------------------------------------------------------------------
// Instances to be laid out later
// ---------------------------------------------------------------------------------------------

// An instance of a structured type or function block that CgTab recorded.
struct LQ_DATA_API POU_INST {
    POU_INST() = default;
    ~POU_INST() { delete init; }
    POU_INST(const POU_INST&) = delete;
    POU_INST& operator=(const POU_INST&) = delete;

    DUVMemberInit_C* init = nullptr;  // owned; the instance's member initialisations, or null
    POU_INST* next = nullptr;
    int32_t pos = 0;         // of the descriptor to patch, in the table that `kind` names
    char16_t name[33] = {};  // the declared name, cut to 32 characters
    uint32_t kind = 0;       // 2: an instance declared in a unit; 9: an array of structures

    LQ_ALLOCATED
};

// The caller's list of types with recorded instances: a chain of entries whose first one the caller
// makes. Destroying the first entry releases the chain and all instances.
struct LQ_DATA_API POU_LIST {
    POU_LIST() = default;
    ~POU_LIST();
    POU_LIST(const POU_LIST&) = delete;
    POU_LIST& operator=(const POU_LIST&) = delete;

    POU_LIST* next = nullptr;
    uint32_t count = 0;  // instances recorded
    POU_INST* first = nullptr;
    POU_INST* last = nullptr;
    char16_t typeName[33] = {};  // cut to 32 characters
    CLQString longTypeName;      // the whole name when `typeName` was cut

    LQ_ALLOCATED
};

// ---------------------------------------------------------------------------------------------
// The table set
// ---------------------------------------------------------------------------------------------

// The tables that a compiler fills while it translates a project and reads while it generates code.
//
// Each table is a record file of variable-length lines. A line is known by its position, the byte
// offset of its length field in its table; positions link the tables. Tables 0 to 8 end every line
// in a user area of a fixed size that the caller chooses per table: the library never looks into
// it. Tables 1 to 6 are found through hash indexes, built from the lines on first use.
//
// A table has a current position, which its operations move. After a read with `keepAtUser`, after
// an append to a table with a user area, and until the table moves again, the table stands at the
// line's user area: the Write without a position then writes there.
//
// Indexes. Building one leaves its table's position where it was, and it finds its lines by what
// stands in them. One of tables 1 to 6 that cannot be built is dropped, so that every search for
// its lines gives -1 rather than miss some: while memory is short, and always when an image holds a
// global, an address or a constant twice. A line that is longer than the rest of its table ends the
// table for the index, as it does for every reader. A line that is appended behind such a one is
// found only as long as the index stays. Tables 0, 7 and 8 are searched line by line: once that
// comes to such a line, a search gives -1, and so does every insertion into 7 and 8 of a name that
// does not lie before it. Tables 7 and 8 have an index that takes nothing but time off that:
// without memory for it they are walked.
//
// The set belongs to one thread at a time. All sets of a thread share one scanner for declaration
// texts.
//
// A null name is that of no line: it is not found, and not entered. A null text of an address or a
// literal counts as the empty one. Bytes must not be null (user areas, and debug data with a
// length), but where null is said to leave them out.
//
// Operations return the position of a line, or -1; or 1 for success and 0 for failure. Memory that
// runs out is a failure as any other: what was appended before it stays.
class LQ_DATA_API CgTab {
  public:
    enum TAB_ID : int32_t {
        TAB_DBG = 0,  // debug records
        TAB_POU = 1,  // program organisation units
        TAB_CMP = 2,  // components of units, in one section a unit
        TAB_GLB = 3,  // global variables
        TAB_ADR = 4,  // direct addresses
        TAB_CST = 5,  // constants
        TAB_LBL = 6,  // labels of jumps
        TAB_TMP = 7,  // temporaries
        TAB_DMM = 8,  // other names
        TAB_ARR = 9,  // array descriptors; no user area
        TAB_COUNT = 10,
    };
    // Tables with a user area: all but the last.
    static constexpr int32_t kUserTables = 9;
    // Capacity of a name in a record. Longer names lie in the tables whole and are found whole; a
    // record shows their first 32 characters.
    static constexpr int32_t kNameSize = 33;

    // --- Records: what a line says -----------------------------------------------------------
    // Texts behind pointers belong to the set and stay valid until its next read.

    struct DBG_INFO {
        const unsigned char* data;
        uint8_t len;
    };

    // The caller's; stored and returned unchanged.
    struct POU_INFO {
        unsigned char bytes[20];
    };

    struct POU_LINE {
        char16_t name[kNameSize];
        POU_INFO info;
    };

    struct ArrDsc {
        ArrInfo* info;     // of a read line: the set's own description, valid until its next read
        uint32_t elemDsc;  // of element types 15, 52 and 53: string length or stored descriptor
    };

    // By IEC_TYPE: `strLen` of STRING, `arr` of ARRAY, `dsc` of structures and function blocks.
    union TYP_DSC {
        uint32_t strLen;
        ArrDsc arr;
        uint32_t dsc;
    };

    struct CMP_LINE {
        char16_t name[kNameSize];
        uint32_t scope;   // DECL_SCOPE
        int32_t adrLine;  // in table 4, or -1
        IEC_TYPE type;
        TYP_DSC dsc;
        int32_t cstLine;  // in table 5, or -1
        uint32_t count;
    };
    struct GLB_LINE {
        char16_t name[kNameSize];
        uint32_t scope;
        int32_t adrLine;
        IEC_TYPE type;
        TYP_DSC dsc;
        int32_t cstLine;
        uint32_t count;
    };

    struct ADR_LINE {
        uint32_t location;  // tagLocation
        uint32_t size;      // tagSize
        const char16_t* text;
        uint32_t count;
    };

    struct CstLine {
        const char16_t* text = nullptr;
        Val val;
        uint32_t count = 0;
    };

    // 1 marks the definition of a label, any other value a reference.
    using LBL_INFO = uint32_t;
    static constexpr LBL_INFO kLabelDefinition = 1;

    struct LBL_LINE {
        char16_t name[kNameSize];
        LBL_INFO info;
        uint32_t count;
    };

    struct TMP_LINE {
        const char16_t* name;
        IEC_TYPE type;
        TYP_DSC dsc;
        uint8_t tag;
        uint32_t count;
    };

    struct DMM_LINE {
        const char16_t* name;
        uint32_t count;
    };

    // A search range: a hit begins at or behind `start` and before `end`. `lines` bounds how many
    // lines a table without an index examines.
    struct POS_DSC {
        int32_t start;
        int32_t end;
        int32_t lines;
    };
    static constexpr POS_DSC kWholeTable = {0, 2147483647, 2147483647};

    // --- Construction, positions -------------------------------------------------------------

    // `usrLen`: the sizes of the user areas of tables 0 to 8; null for none. `ok` becomes 1, or 0
    // when memory is short: the set is then only to be destroyed.
    CgTab(int& ok, uint32_t (*usrLen)[kUserTables]);
    ~CgTab();
    CgTab(const CgTab&) = delete;
    CgTab& operator=(const CgTab&) = delete;

    // Moves a table to a position between 0 and its length.
    int SetPos(TAB_ID id, int32_t pos);
    // 1 when the table stands at its end.
    int End(TAB_ID id);
    // Empties a table and drops its index.
    int Clear(TAB_ID id);

    // --- Reading -----------------------------------------------------------------------------
    // Reads the line at `pos`, or at the current position when `pos` is -1 or absent, and moves
    // `pos` to the next line (-1 stays); at the current position, a user area at which the table
    // stands is passed first. `usr`, when given, receives the user area. 1; or 0 at the
    // end of the table and for every failure, the table and `pos` then at 0. A line without room
    // for its user area gives 0, leaves `pos` and does not rewind.

    // A debug record.
    int Read(int32_t& pos, DBG_INFO& line, int keepAtUser, void* usr);
    // A unit.
    int Read(int32_t& pos, POU_LINE& line, int keepAtUser, void* usr);
    // Of a reference to a global, the type, address and constant are those of the global.
    int Read(int32_t& pos, CMP_LINE& line, int keepAtUser, void* usr);
    // A global.
    int Read(int32_t& pos, GLB_LINE& line, int keepAtUser, void* usr);
    // An address.
    int Read(int32_t& pos, ADR_LINE& line, int keepAtUser, void* usr);
    // A constant.
    int Read(int32_t& pos, CstLine& line, int keepAtUser, void* usr);
    // A label.
    int Read(int32_t& pos, LBL_LINE& line, int keepAtUser, void* usr);
    // A temporary.
    int Read(int32_t& pos, TMP_LINE& line, int keepAtUser, void* usr);
    // Another name.
    int Read(int32_t& pos, DMM_LINE& line, int keepAtUser, void* usr);

    // Any of them at the current position.
    template <typename Line>
    int Read(Line& line, int keepAtUser, void* usr) {
        curPos = -1;
        return Read(curPos, line, keepAtUser, usr);
    }

    // Writes the user area of the line at `pos` and moves `pos` to the next line (-1: of the
    // current line). 0 and no change when that is none, or reaches beyond the table.
    int Write(TAB_ID id, int32_t& pos, const void* usr);
    // Writes the user area of the current line.
    int Write(TAB_ID id, const void* usr);

    // --- Searching ---------------------------------------------------------------------------
    // The position of the line found, at which the table then stands; or -1. A record or buffer
    // that is given receives the line, and the table then stands behind it; when that fails the
    // result is -1. `inc` non-zero counts one use, where the table counts uses.

    // The first line whose user area equals the bytes at `data`, from the current position or, with
    // `rewind`, from the start. The table then stands behind that line.
    int32_t Look(TAB_ID id, const void* data, int rewind);
    // `usr`, when given, receives the user area.
    int32_t Look(const DBG_INFO& info, void* usr);
    // A unit by name; of several the one entered last.
    int32_t Look(const char16_t* name, POU_LINE* line, int inc);
    // A component by name, in a range: the section of a unit.
    int32_t Look(POS_DSC range, const char16_t* name, CMP_LINE* line, int inc);
    // A global by name.
    int32_t Look(const char16_t* name, GLB_LINE* line, int inc);

    // --- Insertion ---------------------------------------------------------------------------
    // The position of the line, found or appended; or -1.

    int32_t Insert(const DBG_INFO& info);  // always appends
    // A direct address, once.
    int32_t Insert(const Address& adr);
    // A literal without text counts as one with the empty text.
    int32_t Insert(Lit& lit);
    // A label's definition, once; or a reference to it, which counts.
    int32_t Insert(const char16_t* name, LBL_INFO info);
    // A temporary; entering it again counts and replaces the tag.
    int32_t Insert(const char16_t* name, IEC_TYPE type, const TYP_DSC& dsc, unsigned char tag);
    // Another name; entering it again counts.
    int32_t Insert(const char16_t* name);
    // A global variable, decoded from a declaration of a global or external section. The address,
    // array and constant lines are entered first and stay even when the global exists already or
    // cannot be entered.
    int32_t Insert(DECL_TYP* decl);
    // Brings the reference count of the label at `pos` to 0.
    int ResetJumps(int32_t pos);

    // Units come through an image or CgTabCompiler::InsertUnit. Returns -1 and changes nothing, as
    // all of these do.
    int32_t Insert(const char16_t* name, POU_INFO& info, uint16_t attr, int* out);
    // The same without attributes.
    int32_t Insert(const char16_t* name, POU_INFO& info, int* out);
    // The same of an editor's reference to a unit.
    int32_t Insert(CPouRef* pou, POU_INFO& info, uint16_t attr, int* out);
    // The same of such a reference, without attributes.
    int32_t Insert(CPouRef* pou, POU_INFO& info, int* out);
    // Returns -1: no unit is marked.
    int32_t MarkPouDeleted(const char16_t* name, uint16_t attr);
    // Returns -1: no globals are marked.
    int32_t MarkGlobalsDeleted(uint16_t attr);

    // --- Images ------------------------------------------------------------------------------
    // The image of the set is, for each table from 0 to 9, its length (32 bits, little-endian) and
    // its bytes. It carries no user area sizes: a set that restores it was made with the same ones.

    // A short write or read gives 0; the tables done so far stay.
    int Save(STREAM_A& s);
    // Into a new set or one whose tables were cleared: nothing is cleared here.
    int Restore(STREAM_A& s);
    // One table without its length; the number of bytes written.
    int32_t Put(TAB_ID id, STREAM_A& s);
    // Reads `n` bytes of a table from a stream, at the table's current position, without a look at
    // its index; the number of bytes read. An index does not find what it knew where other lines
    // stand now, nor older lines of the same name, so clear the table first.
    int32_t Get(TAB_ID id, STREAM_A& s, int32_t n);
    // Writes the user areas of a table, in line order. The number of bytes; or -1, and the table is
    // empty then.
    int32_t PutUsr(TAB_ID id, STREAM_A& s);
    // Reads the user areas of a table, in line order; the number of bytes, or -1, and the table is
    // empty then.
    int32_t GetUsr(TAB_ID id, STREAM_A& s);
    // 1 when all ten tables are empty.
    int IsTableEmpty();

  protected:
    int32_t MarkPouDeleted(int32_t pos, uint16_t attr, int flag);

  private:
    friend class CgTabAccess;    // the tests'
    friend class CgTabCompiler;  // cgtab_compiler.h

    struct LookTyp;
    struct Line;
    struct LineBody;
    struct LineHead;
    struct DECL_ASCII;
    struct ComponentWalk;
    class LineBuffer;
    class Table;

    bool MakeTables(const uint32_t* usrLen);
    void CgTabClose();
    // Null for what is no table, and in a set that was not made.
    Table* TableOf(TAB_ID id) const;
    R_FILE* handle_(TAB_ID id) const;

    // Lines to records.
    template <TAB_ID kId, typename Record>
    int ReadRecord(int32_t& pos, Record& line, int keepAtUser, void* usr);
    const char16_t* KeepText(const LineBody& body);
    static void CopyShort(const LineBody& body, char16_t (&to)[kNameSize]);
    bool GetTypeDsc(IEC_TYPE type, LineBody& body, TYP_DSC& dsc);
    bool Decode(LineBody& body, DBG_INFO& line);
    bool Decode(LineBody& body, POU_LINE& line);
    bool Decode(LineBody& body, CMP_LINE& line);
    bool Decode(LineBody& body, GLB_LINE& line);
    bool Decode(LineBody& body, ADR_LINE& line);
    bool Decode(LineBody& body, CstLine& line);
    bool Decode(LineBody& body, LBL_LINE& line);
    bool Decode(LineBody& body, TMP_LINE& line);
    bool Decode(LineBody& body, DMM_LINE& line);
    int Read(int32_t& pos, ArrDsc& a);

    template <TAB_ID kId, typename Record>
    int32_t LookName(const POS_DSC& range, const char16_t* name, Record* line, int inc);

    // Insertion.
    int32_t LookOrAppend(TAB_ID id, Line& line);
    int32_t Insert(const ArrDsc& a);
    int32_t InsertConstant(const char16_t* text, Val& val);
    int32_t InsertGlobalFBorDUT(DECL_ASCII* decl, POU_INFO& info, uint16_t attr);

    // Declarations.
    bool GetDecl(const DECL_TYP* decl, DECL_ASCII& out);
    bool DecodeParts(const DECL_TYP* decl, DECL_ASCII& out);
    bool GetTypeAndValue(const DECL_TYP* decl, uint32_t kind, DECL_ASCII& out);
    int32_t Insert(DECL_TYP* decl, DECL_ASCII& d);
    int32_t Insert(DECL_ASCII& d);
    int AppendCmp(POU_HEADER_TYP* header, uint16_t attr, POU_LIST* list, POS_DSC& range, int count);

    Table* tables = nullptr;  // ten, in the order of TAB_ID; null when the set was not made
    int32_t curPos = 0;
    char16_t* longBuf = nullptr;  // names of more than 64 characters
    ArrInfo arrInfo;              // the array descriptor decoded last
    alignas(2) unsigned char shortBuf[256] = {};
};

// Releases the scanner that all table sets of the calling thread share; the next set that is
// constructed there, or that decodes a declaration there, makes it again. A thread that ends need
// not call it: the scanner goes with the thread (lq::ReleaseThread).
LQ_DATA_API void CgTab_ReleaseTokenScanner();

// 1 when table 1 has no unit of that name and the project model reports that it calls itself.
// Without memory for the table's index no unit is found.
LQ_DATA_API int CgTab_IsRecursivPOU(CgTab* tab, const char16_t* name);
