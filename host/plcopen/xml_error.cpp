#include "host/plcopen/xml_error.h"

#include "lq_data/host/text/message.h"

namespace lq::host::plcopen {

namespace {

// In English these are expat's own words.
constexpr struct {
    XML_Error error;
    const char* text;
} kTexts[] = {
    {XML_ERROR_SYNTAX, Message("syntax error")},
    {XML_ERROR_NO_ELEMENTS, Message("no element found")},
    {XML_ERROR_INVALID_TOKEN, Message("not well-formed (invalid token)")},
    {XML_ERROR_UNCLOSED_TOKEN, Message("unclosed token")},
    {XML_ERROR_PARTIAL_CHAR, Message("partial character")},
    {XML_ERROR_TAG_MISMATCH, Message("mismatched tag")},
    {XML_ERROR_DUPLICATE_ATTRIBUTE, Message("duplicate attribute")},
    {XML_ERROR_JUNK_AFTER_DOC_ELEMENT, Message("junk after document element")},
    {XML_ERROR_UNDEFINED_ENTITY, Message("undefined entity")},
    {XML_ERROR_BAD_CHAR_REF, Message("reference to invalid character number")},
    {XML_ERROR_MISPLACED_XML_PI, Message("XML or text declaration not at start of entity")},
    {XML_ERROR_UNKNOWN_ENCODING, Message("unknown encoding")},
    {XML_ERROR_INCORRECT_ENCODING, Message("encoding specified in XML declaration is incorrect")},
    {XML_ERROR_UNCLOSED_CDATA_SECTION, Message("unclosed CDATA section")},
    {XML_ERROR_XML_DECL, Message("XML declaration not well-formed")},
    {XML_ERROR_UNBOUND_PREFIX, Message("unbound prefix")},
};

}  // namespace

std::string_view XmlErrorText(XML_Error error) noexcept {
    for (const auto& row : kTexts) {
        if (row.error == error) {
            return Translated(row.text);
        }
    }
    return XML_ErrorString(error);
}

}  // namespace lq::host::plcopen
