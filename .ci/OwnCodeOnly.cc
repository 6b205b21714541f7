// A plug-in for clang-tidy, built by check-tidy.  It restricts all checks to declarations outside system
// headers: clang-tidy would report nothing from those headers, but they are nine tenths of the syntax tree.

#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <clang/AST/ASTContext.h>
#include <clang/ASTMatchers/ASTMatchFinder.h>

#include <vector>

namespace tallyhorn {

/// Matches the root of the syntax tree, which is visited first, and limits the traversal of all other checks
/// to declarations outside system headers.
class OwnCodeOnly final : public clang::tidy::ClangTidyCheck {
public:
    using ClangTidyCheck::ClangTidyCheck;

    void registerMatchers(clang::ast_matchers::MatchFinder* finder) override {
        finder->addMatcher(clang::ast_matchers::translationUnitDecl(), this);
    }
    void check(const clang::ast_matchers::MatchFinder::MatchResult& result) override {
        std::vector<clang::Decl*> own;
        for (clang::Decl* const decl : result.Context->getTranslationUnitDecl()->decls()) {
            if (!result.SourceManager->isInSystemHeader(decl->getLocation()))
                own.push_back(decl);
        }
        result.Context->setTraversalScope(own);
    }
};

class Module final : public clang::tidy::ClangTidyModule {
public:
    void addCheckFactories(clang::tidy::ClangTidyCheckFactories& factories) override {
        factories.registerCheck<OwnCodeOnly>("tallyhorn-own-code-only");
    }
};

}  // namespace tallyhorn

static const clang::tidy::ClangTidyModuleRegistry::Add<tallyhorn::Module> Registered("tallyhorn", "");
