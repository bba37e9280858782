#include <cstdio>

#include <platform/ado/com_error.h>
#include <platform/ado/pointer.h>

namespace ado20 {

namespace {

struct Message {
    HResult code;
    const char* text;
};

/// What a code says of itself; errors of a database bring their own text.
constexpr Message messages[] = {
    {hrFail, "Erreur non spécifiée"},
    {hrNotImplemented, "Non implémenté"},
    {hrPointer, "Pointeur non valide"},
    {hrOutOfMemory, "Mémoire insuffisante"},
    {hrTypeMismatch, "Type incompatible."},
    {hrOverflow, "Hors de la plage autorisée."},
    {hrClassNotRegistered, "Classe non enregistrée"},
    {hrPermissionDenied, "Impossible de mettre à jour. La base de données est en lecture seule."},
    {hrBadBookmark, "Signet non valide."},
    {hrDatabaseExists, "La base de données existe déjà."},
    {hrErrorsOccurred, "La valeur ne convient pas à la taille ou aux limites du champ."},
    {hrDeletedRow, "L'enregistrement a été supprimé."},
    {hrInvalidArgument,
     "Les arguments sont de type incorrect, en dehors des limites autorisées ou en conflit les uns avec les "
     "autres."},
    {hrNoCurrentRecord,
     "BOF ou EOF est égal à True ou l'enregistrement actuel a été supprimé. L'opération demandée nécessite "
     "un enregistrement actuel."},
    {hrIllegalOperation, "Cette opération n'est pas autorisée dans ce contexte."},
    {hrFeatureNotAvailable, "L'objet ou le fournisseur n'est pas capable d'effectuer l'opération demandée."},
    {hrItemNotFound,
     "Impossible de trouver l'objet dans la collection correspondant au nom ou à la référence ordinale "
     "demandé."},
    {hrObjectClosed, "Cette opération n'est pas autorisée si l'objet est fermé."},
    {hrObjectOpen, "Cette opération n'est pas autorisée si l'objet est ouvert."},
    {hrProviderNotFound,
     "Impossible de trouver le fournisseur. Il n'est peut-être pas correctement installé."},
    {hrInvalidConnection,
     "La connexion ne peut pas être utilisée pour effectuer cette opération. Elle est fermée ou non valide "
     "dans ce contexte."},
};

const char* messageOf(HResult code) {
    for (const Message& message : messages)
        if (message.code == code) return message.text;
    return "";
}

}  // namespace

_com_error::_com_error(HResult code) : _com_error(code, messageOf(code), "ADODB") {}

std::string _com_error::ErrorMessage() const {
    const std::string known = messageOf(m_code);
    if (!known.empty()) return known;
    char text[32];
    std::snprintf(text, sizeof text, "Erreur 0x%08X", static_cast<unsigned>(m_code));
    return text;
}

Counted::~Counted() = default;

}  // namespace ado20
