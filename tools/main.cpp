// evalg: draws, tabulates and sketches relations with the evalg library.
// Exit status: 0 done, 2 bad input (nothing written), 1 output not writable.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <new>

#include "Commands.h"
#include "Errors.h"
#include "Kinds.h"

namespace {

using namespace evalgtool;

void addWindowOptions(CLI::App *command, WindowOptions &o) {
    command->add_option("--window", o.window, "XMIN,XMAX,YMIN,YMAX: the ranges of the outermost pixel centres")
        ->default_str("-8,8,-5,5");
    command->add_option("--size", o.size, "MxN: the window's size in pixels, 1 to 32767 each")
        ->default_str("161x101");
}

// The one line for bad input, with where to look for the accepted forms.
int badInput(std::string const &message, std::string const &command) {
    std::cerr << "evalg: " << message << " (see 'evalg" << (command.empty() ? "" : " " + command)
              << " --help')\n";
    return 2;
}

std::string commandPath(CLI::App &app) {
    std::string path;
    for (CLI::App *c = &app; c;) {
        std::vector<CLI::App *> chosen = c->get_subcommands();
        if (chosen.empty()) break;
        c = chosen.front();
        path += (path.empty() ? "" : " ") + c->get_name();
    }
    return path;
}

// CLI11's message for words it did not expect, in the tool's terms: which
// option is unknown.
std::string extrasMessage(CLI::ExtrasError const &e) {
    std::string message = e.what();
    std::size_t colon = message.find(": ");
    std::string words = colon == std::string::npos ? message : message.substr(colon + 2);
    return (words.compare(0, 1, "-") == 0 ? "unknown option: " : "unexpected argument: ") + words;
}

// A command was required and none came: name the word that stood in its place.
std::string missingCommandMessage(int argc, char **argv, std::string const &path, std::string const &commands) {
    int skip = 1 + int(std::count(path.begin(), path.end(), ' ')) + (path.empty() ? 0 : 1);
    for (int i = skip; i < argc; ++i)
        if (argv[i][0] == '-') return "unknown option '" + std::string(argv[i]) + "'; the commands are " + commands;
    return "a command is required: " + commands;
}

} // namespace

int main(int argc, char **argv) {
    // Named here, so that usage lines say "evalg" and not the path it was run by.
    CLI::App app{"evalg: draw, tabulate and sketch relations with the evalg graph library.", "evalg"};
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("evalg ") + EVALG_VERSION);
    app.footer("Examples:\n"
               "  evalg plot \"y = x^2\"                       a braille picture in the terminal\n"
               "  evalg plot \"x^2 + y^2 = 9\" -o circle.png   drawn by the exact circle rasteriser\n"
               "  evalg plot \"y < sin(x)\" --and \"r = 1 + cos(θ)\" -o two.svg\n"
               "  evalg table \"y = x^2\" --from -2 --to 2 --step 0.5\n"
               "Commands: plot, table, sketch to-pixels, sketch from-pixels, gallery.\n"
               "Run 'evalg gallery' to draw every kind into ./gallery (open gallery/index.html).\n"
               "Exit status: 0 done, 2 bad input (no file written), 1 the output could not be written.");

    PlotOptions plot;
    CLI::App *plotCommand = app.add_subcommand("plot", "Draw relations on a graph window");
    plotCommand
        ->add_option("relation", plot.relation,
                     "\"RELATION\" as typed (\"x^2 + y^2 = 9\"), or KIND NAME=VALUE...: the relation to draw")
        ->required();
    plotCommand->add_option("--and", plot.others, "RELATION or KIND NAME=VALUE...: one more relation, in its own colour")
        ->expected(1, -1);
    plotCommand->add_option("--t", plot.tRange, "MIN,MAX: the t range of typed curves (x(t), y(t))");
    plotCommand->add_option("--theta", plot.thetaRange, "MIN,MAX: the θ range of typed curves r = f(θ)");
    addWindowOptions(plotCommand, plot.window);
    plotCommand->add_option("-o,--output", plot.output, "FILE: where to write; the terminal when absent");
    plotCommand->add_option("--format", plot.format, "png|svg|json|csv|text; else from the file's extension");
    plotCommand->add_option("--scale", plot.scale, "S: each pixel drawn S x S in PNG and SVG, 1 to 64")
        ->default_str("4");
    plotCommand->add_flag("--no-axes", plot.noAxes, "leave out the axes, the grid and their numbers");
    plotCommand->add_option("--title", plot.title, "TEXT: a title under the PNG or SVG picture, over the text one");
    plotCommand->add_flag("--smooth", plot.smooth, "SVG: each stretch a smooth line rather than its pixels");
    plotCommand->add_option("--width", plot.width,
                            "N: the text picture's width in characters; default the terminal's, else 80");
    plotCommand->footer("Examples: evalg plot \"y = x^2\"; evalg plot \"x^2 + y^2 = 9\" --and \"y < sin(x)\" -o two.png;\n"
                        "evalg plot circle r=3 --format json\n\n" +
                        kindsHelp());

    TableOptions table;
    CLI::App *tableCommand = app.add_subcommand("table", "Tabulate a relation's y values at a list of x values");
    tableCommand->add_option("relation", table.relation, "KIND NAME=VALUE...: the relation, as for plot")->required();
    tableCommand->add_option("--x", table.xs, "X1,X2,...: the x values");
    tableCommand->add_option("--from", table.from, "A: the first x of a range");
    tableCommand->add_option("--to", table.to, "B: the last x of a range");
    tableCommand->add_option("--step", table.step, "S: the range's step, above 0");
    tableCommand->add_option("-o,--output", table.output, "FILE: where to write; the terminal when absent");
    tableCommand->add_option("--format", table.format, "text|csv|json; else from the file's extension");
    tableCommand->add_option("--digits", table.digits, "N: round the values to N significant digits, 1 to 17");
    tableCommand->footer("A missing y is blank in text and CSV and null in JSON. Kinds as for plot.");

    SketchOptions toPixels, fromPixels;
    CLI::App *sketchCommand = app.add_subcommand("sketch", "Turn a sketch into pixels or pixels into a sketch");
    sketchCommand->require_subcommand(1);
    CLI::App *toPixelsCommand =
        sketchCommand->add_subcommand("to-pixels", "The pixel of every sketch point (FILE: x,y points)");
    CLI::App *fromPixelsCommand = sketchCommand->add_subcommand(
        "from-pixels", "A sketch through the centres of pixels (FILE: column,row points), with its marks");
    for (auto command : {std::make_pair(toPixelsCommand, &toPixels), std::make_pair(fromPixelsCommand, &fromPixels)}) {
        command.first->add_option("file", command.second->file, "FILE: a JSON or CSV list of points")->required();
        addWindowOptions(command.first, command.second->window);
        command.first->add_option("-o,--output", command.second->output, "FILE: where to write; the terminal when absent");
        command.first->add_option("--format", command.second->format, "text|csv|json; else from the file's extension");
    }

    GalleryOptions gallery;
    CLI::App *galleryCommand =
        app.add_subcommand("gallery", "Draw every kind on the default window: PNGs, a contact sheet, index.html");
    galleryCommand->add_option("-o,--output", gallery.folder, "DIR: the folder to write into")->default_str("gallery");

    std::string command;
    try {
        try {
            app.parse(argc, argv);
        } catch (CLI::CallForHelp const &e) {
            return app.exit(e);
        } catch (CLI::CallForAllHelp const &e) {
            return app.exit(e);
        } catch (CLI::CallForVersion const &e) {
            return app.exit(e);
        } catch (CLI::ExtrasError const &e) {
            return badInput(extrasMessage(e), commandPath(app));
        } catch (CLI::ParseError const &e) {
            std::string message = e.what();
            std::string path = commandPath(app);
            if (message == "A subcommand is required")
                message = missingCommandMessage(argc, argv, path,
                                                path == "sketch" ? "to-pixels, from-pixels" : "plot, table, sketch, gallery");
            if (message == "relation is required")
                message = "a relation is required: \"RELATION\" as typed, such as \"x^2 + y^2 = 9\", or KIND "
                          "NAME=VALUE..., kinds: " + kindNames();
            return badInput(message, commandPath(app));
        }
        command = commandPath(app);
        if (plotCommand->parsed()) runPlot(plot);
        if (tableCommand->parsed()) runTable(table);
        if (toPixelsCommand->parsed()) runSketchToPixels(toPixels);
        if (fromPixelsCommand->parsed()) runSketchFromPixels(fromPixels);
        if (galleryCommand->parsed()) runGallery(gallery);
    } catch (UsageError const &e) {
        return badInput(e.what(), command);
    } catch (OutputError const &e) {
        std::cerr << "evalg: " << e.what() << "\n";
        return 1;
    } catch (std::bad_alloc const &) {
        std::cerr << "evalg: out of memory\n";
        return 1;
    } catch (std::exception const &e) {
        std::cerr << "evalg: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
