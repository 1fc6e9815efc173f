#include "core/qvutils/xml/errorcode.h"

#include "core/qvutils/diag/codes.h"

#include <xercesc/framework/XMLErrorCodes.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>

namespace qv {

const char* CodeOfError(unsigned int error, bool atEnd) {
    using xercesc::XMLErrs;
    switch (error) {
    case XMLErrs::EntityNotFound: return code::UNKNOWN_ENTITY;
    case XMLErrs::NoUnparsedEntityRefs:
    case XMLErrs::NoExtRefsInAttValue: return code::EXTERNAL_ENTITY;
    case XMLErrs::RecursiveEntity: return code::RECURSIVE_ENTITY;
    case XMLErrs::UnsupportedXMLVersion: return code::XML_VERSION;
    case XMLErrs::BadXMLEncoding: return code::UNKNOWN_ENCODING;
    case XMLErrs::Expected2ndSurrogateChar:
    case XMLErrs::Unexpected2ndSurrogateChar: return atEnd ? code::TRUNCATED : code::NOT_IN_ENCODING;
    default: return atEnd ? code::TRUNCATED : code::NOT_WELL_FORMED;
    }
}

const char* CodeOfException(unsigned int exception) {
    using xercesc::XMLExcepts;
    switch (exception) {
    case XMLExcepts::Trans_CantCreateCvtrFor:
    case XMLExcepts::XMLRec_UnknownEncoding:
    case XMLExcepts::Reader_BadAutoEncoding:
    case XMLExcepts::Reader_EncodingStrRequired: return code::UNKNOWN_ENCODING;
    case XMLExcepts::Reader_CouldNotDecodeFirstLine:
    case XMLExcepts::Trans_BadSrcSeq:
    case XMLExcepts::Trans_BadSrcCP:
    case XMLExcepts::Trans_BadTrailingSurrogate:
    case XMLExcepts::UTF8_FormatError:
    case XMLExcepts::UTF8_Invalid_3BytesSeq:
    case XMLExcepts::UTF8_Irregular_3BytesSeq:
    case XMLExcepts::UTF8_Invalid_4BytesSeq:
    case XMLExcepts::UTF8_Exceeds_BytesLimit: return code::NOT_IN_ENCODING;
    case XMLExcepts::Gen_UnexpectedEOF: return code::TRUNCATED;
    default: return code::NOT_WELL_FORMED;
    }
}

}  // namespace qv
