#include "core/qvutils/diag/codes.h"

#include <algorithm>
#include <cerrno>

namespace {

using enum SMSeverity;

constexpr SMCodeInfo CODES[] = {
    {qv::code::INTERNAL_ERROR, error, "internal error",
     "Something failed that never should: a fault of this library, or of a program that watches it. Nothing was written. Please report "
     "it together with the document.",
     "error[SM0001] the operation failed, and nothing told why"},

    {qv::code::ELEMENT_NOT_KEPT, error, "an element is not kept",
     "The model has no place for this element, takes only one where there are several, or reads no value that has elements in it, so a "
     "document written from the model would lack it with all that is in it. Take it out, or correct its name; commands that write take "
     "--accept-loss to go on without it.",
     "model.xml:12:5: error[SM1001] <colour> in [sales].[products].[name] is not kept (23 bytes)"},
    {qv::code::ATTRIBUTE_NOT_KEPT, error, "an attribute is not kept",
     "The model has no place for this attribute, or for its value, so a document written from the model would lack it. Take it out, or "
     "correct it; commands that write take --accept-loss to go on without it.",
     "model.xml:12:16: error[SM1002] the attribute colour of <queryItem> in [sales].[products].[name] is not kept (12 bytes)"},
    {qv::code::TEXT_NOT_KEPT, error, "a text is not kept",
     "The model has no place for text here, or cannot hold this value, so a document written from the model would lack it or hold "
     "another one. Take it out, or correct it; commands that write take --accept-loss to go on without it.",
     "model.xml:14:11: error[SM1003] the text of <size> in [sales].[products].[name] is not kept (3 bytes)"},

    {qv::code::NOT_WELL_FORMED, error, "not well-formed XML",
     "The document breaks the rules of XML at this place, so that nothing of it can be read. The message tells the rule; "
     "the fault is here or shortly before.",
     "model.xml:214:9: error[SM2001] expected end of tag 'name'"},
    {qv::code::EMPTY_DOCUMENT, error, "the document is empty",
     "The file, or standard input, holds no byte. Was it written to the end, and is it the right one?",
     "model.xml:1:1: error[SM2002] the document is empty"},
    {qv::code::WRONG_ROOT, error, "the root element is another one",
     "A model begins with <project>, and a separate file with the element that the placeholder of its object promises. "
     "This document is something else.",
     "report.xml:2:1: error[SM2003] no model document: the root element is <report>, not <project>"},
    {qv::code::TRUNCATED, error, "the document ends too early",
     "The end of the document comes where something is still open: a tag, a text, or elements without their end. Most "
     "often a copy or a download broke off.",
     "model.xml:5021:3: error[SM2004] input ended before all started tags were ended; last tag started is 'folder'"},
    {qv::code::NOT_IN_ENCODING, error, "bytes that are no characters",
     "Bytes at this place stand for no character in the encoding of the document, which is UTF-8 unless its first line "
     "names another. Correct the encoding that is named, or convert the file.",
     "model.xml:31:14: error[SM2005] the bytes here are not UTF-8"},
    {qv::code::NUL_CHARACTER, error, "a NUL character",
     "A byte of value zero stands in the document. No XML document may hold one; the file is damaged, or no text at all.",
     "model.xml:1:40: error[SM2006] a NUL character is not allowed"},
    {qv::code::UNKNOWN_ENCODING, error, "an encoding that is not known",
     "The first line of the document names an encoding that cannot be read. Convert the document to UTF-8, and let its "
     "first line say so.",
     "model.xml:1:43: error[SM2007] unable to create converter for 'EBCDIC-XX' encoding"},
    {qv::code::XML_VERSION, error, "another version of XML",
     "The document is not of XML version 1.0. Version 1.1 allows characters that could not be written back.",
     "model.xml:1:20: error[SM2008] XML version 1.1 is not supported"},
    {qv::code::EXTERNAL_ENTITY, error, "an external entity",
     "The document asks for the content of another file or address. None is ever opened; put the content where the "
     "reference stands.",
     "model.xml:4:12: error[SM2009] the external entity \"file:///etc/hostname\" is not opened"},
    {qv::code::UNKNOWN_ENTITY, error, "an entity that is not declared",
     "The document refers to an entity that it does not declare itself. A DTD outside of it is never opened, so "
     "declarations there do not count.",
     "model.xml:12:30: error[SM2010] entity 'nbsp' not found"},
    {qv::code::PARAMETER_ENTITY, error, "a declaration that is not supported",
     "The DOCTYPE has parameter entities, or attribute lists behind entities. Both expand where nothing could bound "
     "them. Take them out; models need no DOCTYPE.",
     "model.xml:2:20: error[SM2011] parameter entities are not supported"},
    {qv::code::RECURSIVE_ENTITY, error, "an entity that contains itself",
     "The text of the entity leads back to the entity, so it has no end.", "model.xml:3:9: error[SM2012] recursive entity expansion 'a'"},
    {qv::code::NO_SUCH_FILE, error, "there is no such file",
     "Nothing stands under this path. For a separate file of a model: the model lacks what it holds.",
     "model.xml: error[SM2021] cannot open: No such file or directory"},
    {qv::code::NO_PERMISSION, error, "the file may not be read",
     "The system does not let this user read the file, or pass a directory on the way to it.",
     "model.xml: error[SM2022] cannot open: Permission denied"},
    {qv::code::IS_DIRECTORY, error, "a directory in place of a file", "The path leads to a directory. Name the main document in it.",
     "models: error[SM2023] cannot read: Is a directory"},
    {qv::code::UNREADABLE_FILE, error, "the file cannot be read",
     "The system failed to read the file, or it is nothing that a model may stand in: a separate file must be a regular "
     "file. The message tells why.",
     "model.xml: error[SM2024] cannot read: Input/output error"},
    {qv::code::OUTSIDE_ROOT, error, "a file outside of the model's directory",
     "The name of a separate file leads out of the directory of the main document: by an absolute path, by \"..\", or by "
     "a link. Such a file is never opened. Move it into the directory, and correct the placeholder.",
     "model.xml:7:80: error[SM2025] Error reading SM model from XML: ../other.xml: cannot open: it leads out of the "
     "directory of the model"},
    {qv::code::READ_INSIDE_ITSELF, error, "a file inside itself",
     "A placeholder names a file that is being read already, so the model would have no end. Take the placeholder out of "
     "that file.",
     "model.xml:7:80: error[SM2026] Error reading SM model from XML: part.xml: the file would be read inside itself; "
     "take the placeholder that names it out of it"},

    {qv::code::TOO_MANY_BYTES, error, "the document is too large",
     "The document and its separate files together have more bytes than the limit \"document\" allows (16G by default). "
     "Where it is meant so, raise the limit with --limits; else somebody wants to keep this machine busy.",
     "model.xml: error[SM2101] the document is larger than 17179869184 bytes; where that is meant, raise the limit, "
     "as by --limits document=32G"},
    {qv::code::TOO_DEEP, error, "elements are nested too deep",
     "More elements stand inside each other than the limit \"depth\" allows (1000 by default), those around a separate "
     "file included. Where it is meant so, raise the limit with --limits; else somebody wants to keep this machine busy.",
     "model.xml:9:4001: error[SM2102] elements are nested deeper than 1000; where that is meant, raise the limit, as by "
     "--limits depth=2000"},
    {qv::code::TOO_MANY_ELEMENTS, error, "too many elements",
     "The document and its separate files together have more elements than the limit \"elements\" allows (1000000000 by "
     "default). Where it is meant so, raise the limit with --limits; else somebody wants to keep this machine busy.",
     "model.xml:9:5: error[SM2103] there are more than 1000000000 elements; where that is meant, raise the limit, as by "
     "--limits elements=2000000000"},
    {qv::code::TOO_MANY_ATTRIBUTES, error, "too many attributes",
     "A start tag has more attributes than the limit \"attributes\" allows (10000 by default). Where it is meant so, "
     "raise the limit with --limits; else somebody wants to keep this machine busy.",
     "model.xml:9:88891: error[SM2104] a start tag has more than 10000 attributes; where that is meant, raise the limit, as "
     "by --limits attributes=20000"},
    {qv::code::ATTRIBUTE_TOO_LONG, error, "an attribute value is too long",
     "An attribute value has more bytes than the limit \"attribute\" allows (16M by default). Where it is meant so, "
     "raise the limit with --limits; else somebody wants to keep this machine busy.",
     "model.xml:9:8: error[SM2105] an attribute value is longer than 16777216 bytes; where that is meant, raise the "
     "limit, as by --limits attribute=32M"},
    {qv::code::TEXT_TOO_LONG, error, "a text is too long",
     "A text, a tag, a comment or the DOCTYPE has more bytes than the limit \"text\" allows (256M by default). Where it "
     "is meant so, raise the limit with --limits; else somebody wants to keep this machine busy.",
     "model.xml:9:11: error[SM2106] a text is longer than 268435456 bytes; where that is meant, raise the limit, as by "
     "--limits text=512M"},
    {qv::code::TOO_MANY_NAMES, error, "too many element names",
     "The elements of a file have more different names than the limit \"names\" allows (100000 by default). A model has "
     "about four hundred. Where it is meant so, raise the limit with --limits; else somebody wants to keep this machine "
     "busy.",
     "model.xml:9:5: error[SM2107] elements have more than 100000 different names; where that is meant, raise the limit, "
     "as by --limits names=200000"},
    {qv::code::TOO_MANY_FILES, error, "too many separate files",
     "The placeholders of the model name more files than the limit \"files\" allows (100000 by default), or the same "
     "files again too often. Where it is meant so, raise the limit with --limits; else somebody wants to keep this "
     "machine busy.",
     "model.xml:57:5: error[SM2108] the model has more than 100000 separate files; where that is meant, raise the limit, "
     "as by --limits files=200000"},
    {qv::code::TOO_MANY_REFERENCES, error, "too many entity references",
     "References to internal entities, those inside of entities included, are more than the limit \"references\" allows "
     "(100000 by default). Where it is meant so, raise the limit with --limits; else somebody wants to keep this machine "
     "busy.",
     "model.xml:9:30: error[SM2109] there are more than 100000 references to internal entities; where that is meant, "
     "raise the limit, as by --limits references=200000"},
    {qv::code::EXPANDS_TOO_FAR, error, "entities expand too far",
     "The texts of all internal entities referred to, and the attributes that the DOCTYPE gives by default, have together more characters "
     "than the limit \"expansion\" allows (1M by default). A few lines can so be made to stand for more text than any machine holds. Where "
     "it is "
     "meant so, raise the limit with --limits; else somebody wants to keep this machine busy.",
     "model.xml:9:30: error[SM2110] internal entities expand to more than 1048576 characters; where that is meant, raise "
     "the limit, as by --limits expansion=2M"},
    {qv::code::FILES_TOO_DEEP, error, "separate files are nested too deep",
     "Each of these files is read in the midst of the one that names it, and there are more of them under way than any "
     "model needs. Put the content of some into the files that name them.",
     "Sales.qvf:1:2114: error[SM2111] more than 100 files would be read one inside the other"},
    {qv::code::STACK_TOO_SMALL, error, "the model is too deep for the stack",
     "Writing, saving and comparing a model take some of the stack of their thread for each level of it, and its objects stand inside each "
     "other so deep that the stack does not do. Where that is meant, give the thread a larger one: ulimit -s, before the command.",
     "model.xml: error[SM2112] the model is too deep for the stack of this thread; give it a larger one, as by ulimit -s"},
    {qv::code::TOO_MANY_FINDINGS, error, "too much to tell",
     "All that is found is held until it is told, and of one kind (events of the log, values that cannot be read, findings, losses) there "
     "is "
     "more than the limit \"findings\" allows (100000 by default). Where only the log is shown, the rest of the document is read, and this "
     "is "
     "a warning at the first event that is not listed. Most such documents are no models; where one is, raise the limit with --limits.",
     "model.xml: error[SM2113] 1000000 parts of the document would not be kept, more than are to be listed; where that is meant, "
     "raise the limit, as by --limits findings=200000"},

    {qv::code::DANGLING_REFERENCE, warning, "a reference that leads nowhere",
     "No object of the model has the address that stands here. The object was renamed, moved or taken out, or the text was mistyped; "
     "or the model waits for a part that it does not have yet. Correct the reference, or bring the object back.",
     "model.xml:88:19: warning[SM3001] the reference [sales].[price] in 'expression' names no object of the model "
     "[[sales].[orders].[sum]]"},
    {qv::code::DUPLICATE_ID, warning, "two objects with one id",
     "An object before this one has the same id, most often because one was copied. A repository gives the later one another id when the "
     "model is put there. Take the id out, or give a new one.",
     "model.xml:120:3: warning[SM3002] the id 7f9c2ba4 is also that of [sales].[orders] [[sales].[orders 2]]"},
    {qv::code::DUPLICATE_OBJECT_ID, warning, "two objects with one object id",
     "An object before this one has the same names all the way, so references mean that one and never this. Give it another name.",
     "model.xml:120:3: warning[SM3003] an object before it has the object id too, so that references never lead here "
     "[[sales].[orders]]"},
    {qv::code::NAME_CLASH, error, "a name clash that was resolved by a rename",
     "The names of namespaces are unique in a model. Of two with one name, the one that ends later gets a number behind its own, "
     "which of one inside the other is the outer one; references by its former name lead to the other. Usually the reason of a loss "
     "(SM1003); give it a name of its own.",
     "model.xml:210:24: error[SM1003] the text of <name> in [sales2] is not kept (5 bytes): error[SM3004] A namespace with name 'sales' "
     "already exists - renaming this namespace to 'sales2'."},
    {qv::code::NO_CARDINALITY, warning, "a cardinality is missing",
     "An end of this relationship does not say how few, or how many, of its objects belong to one of the other end, or the whole end is "
     "not there. Each relationship and scope relationship has two ends. Add mincard and maxcard: zero, one or many.",
     "model.xml:301:9: warning[SM3005] the left end has no maxcard [[sales].[orders to customers]]"},
    {qv::code::UNKNOWN_WORD, warning, "a word outside of its vocabulary",
     "Only certain words may stand here, and this is none of them, so it reads as unset, or by bad luck as another one. Usually the "
     "reason of a loss (SM1001 to SM1003). Correct the word; docs/document.md lists those that are known.",
     "model.xml:41:7: error[SM1001] <usage> in [sales].[orders].[sum] is not kept (19 bytes): warning[SM3006] \"fakt\" is none of the "
     "words that may stand here"},
    {qv::code::NO_DATE, warning, "a date that does not parse",
     "A date is written 2026-11-21T18:00:00, or 2026-11-21 alone, which is its midnight. This text reads as no date at all, or as one "
     "without its fraction "
     "of a second or its zone. Usually the reason of a loss (SM1001 to SM1003). Correct it, or take it out.",
     "model.xml:42:18: error[SM1003] the text of <lastChanged> in [sales].[orders] is not kept (9 bytes): warning[SM3007] \"yesterday\" is "
     "no date"},
    {qv::code::NO_NUMBER, warning, "a number that does not parse",
     "A whole number must stand here: digits, with a sign before them where it makes sense, and no blanks. This text reads as zero, as "
     "the greatest number that can be held, or is passed over. Usually the reason of a loss (SM1001 to SM1003). Correct it, or take it "
     "out.",
     "model.xml:43:13: error[SM1003] the text of <size> in [sales].[orders].[sum] is not kept (4 bytes): warning[SM3008] \"12.5\" is no "
     "whole number"},
    {qv::code::LOOK_ALIKE, warning, "a name that is taken for another one",
     "No element has this name, but it has the number by which a known name is found, so its content went where that of the known one "
     "belongs. The reason of a loss (SM1001). Correct the name.",
     "model.xml:44:7: error[SM1001] <Tjze> in [sales].[orders].[sum] is not kept (14 bytes): warning[SM3009] \"Tjze\" is no known name, "
     "and taken for \"size\""},
    {qv::code::PART_MISSING, error, "a separate file is missing or cannot be opened",
     "The file that a placeholder names cannot be opened: it is not there, may not be read, or lies outside of the directory of the "
     "model. The model lacks what it holds, and commands that write refuse to work on it, with --accept-loss too: nobody has seen what "
     "would be lost. The reason of a loss (SM1001), whose line ends with the fault; a placeholder inside of such a one has a line of its "
     "own. Bring the file back, or take the placeholder out.",
     "model.xml:57:5: error[SM1001] <smnamespacefile> in [sales] is not kept (86 bytes): error[SM3010] a separate file is missing or "
     "cannot be opened: "
     "error[SM2021] Error reading SM model from XML: orders.qvf: cannot open: No such file or directory"},
    {qv::code::PART_BROKEN, error, "a separate file cannot be read",
     "The file that a placeholder names is there, but is no XML, holds something else than the placeholder says, or would be read inside "
     "itself. The model lacks what it holds, and commands that write refuse to work on it, with --accept-loss too. The reason of a loss "
     "(SM1001), whose line ends with the fault and its place in that file. Mend the file, or take the placeholder out.",
     "model.xml:57:5: error[SM1001] <smnamespacefile> in [sales] is not kept (86 bytes): error[SM3011] a separate file cannot be read: "
     "error[SM2002] Error reading SM model from XML: orders.qvf:1:1: the document is empty"},
    {qv::code::EMPTY_PLACEHOLDER, warning, "an empty placeholder of a package",
     "The placeholder names no file, as an export leaves one for a package that was not exported; nothing is read for it. The reason of "
     "a loss (SM1001). Take it out, or name the file of the package.",
     "model.xml:57:5: error[SM1001] <packagefile> in (project).(sales).(7f9c2ba4) is not kept (45 bytes): warning[SM3012] No filename "
     "attribute in packagefile tag."},
    {qv::code::PLACE_LOST, note, "the place of namespaces among other objects is lost",
     "A model in several files has namespaces behind the other objects of their namespace, whatever the order was before.",
     "note[SM3013] the files do not keep where its namespaces stand among its other objects [[sales]]"},
    {qv::code::NAME_LOST, note, "a name comes back with a number behind it",
     "A namespace has the name of the root. In one document it is there first; in several files the root is, and keeps the name.",
     "note[SM3014] the root has its name, so that it comes back with a number behind it [[sales]]"},
    {qv::code::ROLE_BASED_LOST, note, "that a package is based on roles is lost",
     "The placeholder of a package does not say whether the package is based on roles, and its file is not asked.",
     "note[SM3015] that it is based on roles is not read back from its file [[].[packages].[sales]]"},
    {qv::code::PLACE_UNKNOWN, note, "the place of namespaces among other objects is not known",
     "A model in several files does not tell where namespaces stood among the other objects of their namespace, so they come behind "
     "them in one document.",
     "note[SM3016] the files do not tell where its namespaces stood among its other objects [[sales]]"},
    {qv::code::NO_DOCUMENT, note, "a revision without its document",
     "The revision was saved without the document, so a document is written from its rows: with the same content, but the form of this "
     "library.",
     "note[SM3017] revision 3 was saved without its document, so it comes from its rows"},
    {qv::code::NO_TRUTH, warning, "a truth value that does not parse",
     "Either true or false must stand here, in small letters and without blanks. Any other text reads as false, TRUE, yes and 1 included. "
     "Usually the reason of a loss (SM1001 to SM1003). Correct it, or take it out.",
     "model.xml:45:12: error[SM1001] <hidden> in [sales].[orders].[sum] is not kept (20 bytes): warning[SM3018] \"yes\" is neither true "
     "nor false"},
    {qv::code::EXTERNAL_DTD, note, "an external DTD that is not opened",
     "The DOCTYPE of the document names a DTD outside of it, which is never opened. Attributes that it may give by default are not read, "
     "and "
     "a reference to an entity that it declares is an error. A model needs no DOCTYPE; put what is needed into the document.",
     "model.xml:2:1: note[SM3019] the external DTD \"model.dtd\" is not opened"},
};

}  // namespace

std::span<const SMCodeInfo> SMCodes() {
    return CODES;
}

const char* qv::CodeOfSystemError(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR: return code::NO_SUCH_FILE;
    case EACCES:
    case EPERM: return code::NO_PERMISSION;
    case EISDIR: return code::IS_DIRECTORY;
    default: return code::UNREADABLE_FILE;
    }
}

const SMCodeInfo* SMFindCode(std::string_view code) {
    const auto* const found = std::find_if(std::begin(CODES), std::end(CODES), [&](const SMCodeInfo& info) { return info.code == code; });
    return found == std::end(CODES) ? nullptr : found;
}
