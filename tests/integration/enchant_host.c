/* tests/integration/enchant_host.c PROVIDER — the orth provider through
 * Enchant's C API (a broker ordered to orth for en_US), and its dictionary
 * functions called directly where Enchant would answer by itself (session
 * words, words given with a length). XDG_CONFIG_HOME and ENCHANT_CONFIG_DIR
 * must name private folders. Exit status 0 when every check holds. */
#include <dlfcn.h>
#include <enchant-provider.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int failures = 0;

#define CHECK(cond, ...)                                   \
    do {                                                   \
        if (!(cond)) {                                     \
            ++failures;                                    \
            fprintf(stderr, "FAIL line %d: ", __LINE__);   \
            fprintf(stderr, __VA_ARGS__);                  \
            fputc('\n', stderr);                           \
        }                                                  \
    } while (0)

static void nameProvider(const char *const lang, const char *const name, const char *const desc,
                         const char *const file, void *data) {
    (void)lang, (void)desc, (void)file;
    snprintf((char *)data, 64, "%s", name);
}

static void noteEnUs(const char *const tag, const char *const name, const char *const desc,
                     const char *const file, void *data) {
    if (strcmp(tag, "en_US") == 0) nameProvider(tag, name, desc, file, data);
}

/* No suggestion twice, none with two possessive endings. */
static void checkSuggestionList(char **sugs, size_t n, const char *word) {
    for (size_t i = 0; i < n; ++i) {
        for (size_t j = 0; j < i; ++j) CHECK(strcmp(sugs[i], sugs[j]) != 0, "%s: %s twice", word, sugs[i]);
        CHECK(strstr(sugs[i], "'s's") == NULL, "%s: doubled possessive %s", word, sugs[i]);
    }
}

static void throughEnchant(void) {
    EnchantBroker *broker = enchant_broker_init();
    enchant_broker_set_ordering(broker, "en_US", "orth");
    CHECK(enchant_broker_dict_exists(broker, "en_US") == 1, "en_US not found");
    EnchantDict *dict = enchant_broker_request_dict(broker, "en_US");
    CHECK(dict != NULL, "no en_US dictionary: %s", enchant_broker_get_error(broker));
    if (dict == NULL) return;
    char provider[64] = "";
    enchant_dict_describe(dict, nameProvider, provider);
    CHECK(strcmp(provider, "orth") == 0, "en_US comes from %s", provider);

    static const struct { const char *word; int misspelled; } words[] = {
        {"cat", 0}, {"recieve", 1}, {"DECEMBER", 0}, {"MySpace", 0}, {"MYSPACE", 0}, {"caf\xC3\xA9", 0},
        {"doesn\xE2\x80\x99t", 0}, {"well-known", 0}, {"1999", 0}, {"\xD0\x96uk", 1}, {"Thier", 1},
    };
    for (size_t i = 0; i < sizeof words / sizeof words[0]; ++i)
        CHECK(enchant_dict_check(dict, words[i].word, -1) == words[i].misspelled, "check %s", words[i].word);

    size_t n = 0;
    char **sugs = enchant_dict_suggest(dict, "recieve", -1, &n);
    CHECK(n > 0 && strcmp(sugs[0], "receive") == 0, "recieve: first suggestion %s", n ? sugs[0] : "(none)");
    checkSuggestionList(sugs, n, "recieve");
    enchant_dict_free_string_list(dict, sugs);
    sugs = enchant_dict_suggest(dict, "Kinkos's", -1, &n);
    checkSuggestionList(sugs, n, "Kinkos's");
    enchant_dict_free_string_list(dict, sugs);

    enchant_dict_add(dict, "Quuxly", -1);
    CHECK(enchant_dict_check(dict, "Quuxly", -1) == 0, "Quuxly after add");
    enchant_broker_free_dict(broker, dict);

    char listedBy[64] = "";
    enchant_broker_list_dicts(broker, noteEnUs, listedBy);
    CHECK(strcmp(listedBy, "orth") == 0, "en_US listed by %s", listedBy);
    enchant_broker_free(broker);
}

/* The provider's own answers, without Enchant's session and personal lists. */
static void directly(const char *path) {
    void *lib = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    CHECK(lib != NULL, "dlopen %s: %s", path, dlerror());
    if (lib == NULL) return;
    EnchantProvider *(*init)(void) = (EnchantProvider * (*)(void)) dlsym(lib, "init_enchant_provider");
    CHECK(init != NULL, "no init_enchant_provider");
    if (init == NULL) return;
    EnchantProvider *p = init();
    CHECK(strcmp(p->identify(p), "orth") == 0, "identify");
    size_t n = 0;
    char **tags = p->list_dicts(p, &n);
    CHECK(n == 2 && strcmp(tags[0], "en_GB") == 0 && strcmp(tags[1], "en_US") == 0, "list_dicts gave %zu", n);
    g_strfreev(tags);
    CHECK(p->dictionary_exists(p, "en") == 1 && p->dictionary_exists(p, "fr_FR") == 0 &&
              p->dictionary_exists(p, "../en_US") == 0,
          "dictionary_exists");
    CHECK(p->request_dict(p, "xx_XX") == NULL, "request of a missing dictionary");

    EnchantDict *d = p->request_dict(p, "en");
    CHECK(d != NULL, "request en");
    if (d != NULL) {
        /* Words arrive with a length and need not be terminated. */
        CHECK(d->check(d, "catalog", 3) == 0, "cat given with a length");
        CHECK(d->check(d, "Quuxly", 6) == 0, "the personal word, seen by a new dictionary");
        CHECK(d->check(d, "Zorblax", 7) == 1, "Zorblax before the session add");
        d->add_to_session(d, "Zorblax", 7);
        CHECK(d->check(d, "Zorblax", 7) == 0, "Zorblax after the session add");
        char longWord[200];
        memset(longWord, 'a', sizeof longWord);
        CHECK(d->check(d, longWord, sizeof longWord) == 1, "an over-long word");
        CHECK(d->check(d, "\xFF\xFE", 2) == 1, "invalid UTF-8");
        size_t count = 7;
        char **none = d->suggest(d, longWord, sizeof longWord, &count);
        CHECK(none == NULL && count == 0, "suggestions for an over-long word");
        p->dispose_dict(p, d);
    }
    p->dispose(p);
    dlclose(lib);
}

int main(int argc, char **argv) {
    if (argc < 2) {
        fprintf(stderr, "usage: enchant_host PROVIDER.so\n");
        return 2;
    }
    throughEnchant();
    directly(argv[1]);
    if (failures == 0) printf("enchant_host: all passed\n");
    return failures == 0 ? 0 : 1;
}
