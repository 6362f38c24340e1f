#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Removes what text picks up along the way: tracking parameters and invisible characters.
namespace ravlin::TextTransforms {

/// The query parameters to remove, in addition to all that begin with "utm_". Case is ignored.
/// NOTE: the list is broad on purpose. Some of these have a use on some sites; they are removed there too.
inline constexpr auto trackingKeys = std::to_array<std::string_view>({
    "gclid",
    "gclsrc",
    "dclid",
    "gbraid",
    "wbraid",
    "gad",
    "gad_source",
    "gad_campaignid",
    "gcl_au",
    "ga_source",
    "ga_medium",
    "ga_term",
    "ga_content",
    "ga_campaign",
    "ga_place",
    "_ga",
    "_gl",
    "wickedid",
    "msclkid",
    "mc_eid",
    "mc_cid",
    "fbclid",
    "fb_action_ids",
    "fb_action_types",
    "fb_ref",
    "fb_source",
    "igshid",
    "igsh",
    "instagram_shared_post",
    "ttclid",
    "tt_medium",
    "tt_content",
    "twclid",
    "twterm",
    "twsrc",
    "twcamp",
    "twgr",
    "yclid",
    "ysclid",
    "_openstat",
    "_hsenc",
    "_hsmi",
    "__hssc",
    "__hstc",
    "__hsfp",
    "hsa_acc",
    "hsa_ad",
    "hsa_cam",
    "hsa_grp",
    "hsa_kw",
    "hsa_mt",
    "hsa_net",
    "hsa_src",
    "hsa_tgt",
    "hsa_ver",
    "hsctatracking",
    "mkt_tok",
    "mc_tc",
    "vero_id",
    "vero_conv",
    "oly_enc_id",
    "oly_anon_id",
    "_kx",
    "trk_contact",
    "trk_msg",
    "trk_module",
    "trk_sid",
    "s_cid",
    "ef_id",
    "s_kwcid",
    "elqtrack",
    "elqcampaignid",
    "elqcst",
    "elqcsid",
    "pk_campaign",
    "pk_kwd",
    "pk_source",
    "pk_medium",
    "pk_content",
    "pk_cid",
    "pk_vid",
    "piwik_campaign",
    "piwik_kwd",
    "matomo_campaign",
    "matomo_kwd",
    "__s",
    "otc",
    "obclid",
    "tblci",
    "stkw",
    "ref",
    "ref_src",
    "ref_url",
    "referrer",
    "referral",
    "source",
    "campaign",
    "campaign_id",
    "cmpid",
    "campaignid",
    "cid",
    "scid",
    "spm",
    "scm",
    "trk",
    "trkcampaign",
    "trkparams",
    "guccounter",
    "guce_referrer",
    "guce_referrer_sig",
    "ck_subscriber_id",
    "rb_clickid",
    "soc_src",
    "soc_trk",
    "_branch_match_id",
    "ml_subscriber",
    "ml_subscriber_hash",
    "wt_mc",
    "wt_zmc",
    "WT.mc_id",
    "ICID",
    "icid",
    "vgo_ee",
    "redirect_log_mongo_id",
    "redirect_mongo_id",
    "sb_referer_host",
});
static_assert(trackingKeys.size() == 126);

/// Invisible code points: zero-width characters, direction controls, the soft hyphen and the like. Spaces, variation
/// selectors and tag characters are not among them.
inline constexpr auto invisibleScalars = std::to_array<char32_t>({
    0x200B, 0x200C, 0x200D, 0x200E, 0x200F, 0x202A, 0x202B, 0x202C, 0x202D, 0x202E, 0x2060, 0x2061, 0x2062, 0x2063,
    0x2064, 0x2066, 0x2067, 0x2068, 0x2069, 0x00AD, 0x061C, 0x180E, 0xFEFF, 0xFFFC, 0xFFF9, 0xFFFA, 0xFFFB,
});
static_assert(invisibleScalars.size() == 27);

/// `stripTracking` returns longer texts unchanged.
inline constexpr std::size_t kMaxTrackingSize = 0x100000;  // UTF-8 bytes

/// Removes the tracking parameters from every web link in a text; all other bytes stay the same. Links written without
/// a scheme get one: "www.a.com" becomes "http://www.a.com". See LinkDetector for what counts as a link.
///     stripTracking("see https://a.test/?id=7&utm_source=mail#top")  ->  "see https://a.test/?id=7#top"
std::string stripTracking(std::string_view text);

/// `url` without its tracking parameters, and without its "?" if no others are left. The others keep their order and
/// are not re-encoded. If there was a query, a final "?" is removed as well.
///     cleanURL("https://a.test/?gclid=1")  ->  "https://a.test/"
std::string cleanURL(std::string_view url);

/// Deletes all `invisibleScalars`, even those that join emoji.
std::string removeInvisibles(std::string_view text);

}  // namespace ravlin::TextTransforms
