// Help pages that fit a terminal of 80 columns.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

class OmHelpFormatter : public CLI::Formatter {
  public:
    OmHelpFormatter();

    std::string make_description(const CLI::App* app) const override;
    std::string make_footer(const CLI::App* app) const override;
    std::string make_subcommand(const CLI::App* sub) const override;
    std::string make_option(const CLI::Option* option, bool isPositional) const override;
};
