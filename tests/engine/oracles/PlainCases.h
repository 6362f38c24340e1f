#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The case transforms again, by the definitions: character by character, with ICU's own properties and mappings.
namespace ravlin::tests {

std::string plainTitleCase(std::string_view text);
std::string plainSentenceCase(std::string_view text);
std::string plainCapitalizeWords(std::string_view text);
std::vector<std::string> plainWords(std::string_view text);
std::string plainCamelCase(std::string_view text);
std::string plainPascalCase(std::string_view text);
std::string plainSnakeCase(std::string_view text);
std::string plainKebabCase(std::string_view text);
std::string plainConstantCase(std::string_view text);
std::string plainSlug(std::string_view text);

}  // namespace ravlin::tests
