#include "kvstation/commandline/Offers.h"

#include "kvstation/text/JoinWords.h"

namespace kvstation {

std::string offerOf(const Argument& argument) {
    switch (argument.takes) {
        case Takes::Path:
            return "@path";
        case Takes::Folder:
            return "@folder";
        case Takes::Word:
            return argument.placeholder;
        case Takes::Text:
            break;
    }
    return "";
}

std::string offersOf(const std::vector<Argument>& arguments) {
    std::vector<std::string> offers;
    for (const Argument& argument : arguments)
        if (argument.takes != Takes::Text)
            offers.push_back(offerOf(argument));
    return joinWords(offers, " ");
}

}  // namespace kvstation
