// Globals: decoded declarations to lines of table 3.
#include "cgtab/declaration.h"
#include "lq_data/cgtab.h"

using lq::cgtab::DeclFault;

int32_t CgTab::Insert(DECL_TYP* decl) {
    DECL_ASCII d;
    return Insert(decl, d);
}

int32_t CgTab::Insert(DECL_TYP* decl, DECL_ASCII& d) {
    if (!decl || !tables || !GetDecl(decl, d)) {
        return -1;
    }
    return Insert(d);
}

int32_t CgTab::Insert(DECL_ASCII& d) {
    const auto fail = [&d](DeclFault why) {
        d.fault = why;
        return -1;
    };
    if (!lq::cgtab::IsLocatedScope(d.scope)) {
        return fail(DeclFault::kScope);
    }
    const int32_t adrPos = Insert(d.adr);
    if (adrPos < 0) {
        return fail(DeclFault::kMemory);
    }
    lq::cgtab::ByteWriter<6 * 4> extra;
    extra.PutI32(adrPos);
    extra.PutI32(d.type);
    const bool isInstance = d.type == IEC_STRUCTURE || d.type == IEC_FUNCTION_BLOCK;
    if (d.type == IEC_STRING) {
        extra.PutU32(d.dsc.strLen);
    } else if (d.type == IEC_ARRAY) {
        const int32_t arrPos = Insert(d.dsc.arr);
        if (arrPos < 0) {
            return fail(DeclFault::kArrayType);
        }
        extra.PutI32(arrPos);
    } else if (isInstance) {
        extra.PutI32(-1);
    } else if (!IsElementaryType(d.type)) {
        return fail(DeclFault::kTableType);
    }
    int32_t cstPos = -1;
    if (!isInstance) {
        cstPos = InsertConstant(d.initText, d.init);
        if (cstPos < 0) {
            return fail(DeclFault::kTextTooLong);
        }
    }
    extra.PutI32(cstPos);
    extra.PutU32(1);
    extra.PutU32(d.scope);
    Line line(TAB_GLB, d.name);
    line.SetExtra(extra);
    const int32_t pos = LookOrAppend(TAB_GLB, line);
    return pos >= 0 ? pos : fail(DeclFault::kMemory);
}
