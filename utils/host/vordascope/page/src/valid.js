// Whether statistics are valid: there is a flag for each item, "lum_valid = 0" of stat.lum.
import { validOf } from './known.js';

/** The flag of the item that a field belongs to; undefined where the text has none. */
export const validityOf = ({ item, run }) => run.field(validOf(item));

/** What is to be said of statistics at what a view shows; '' where they are valid or nothing says so. */
export function invalidText(flag, { now, before }) {
    if (!flag) return '';
    const sides = [now, ...(before ? [before] : [])].map(
        (moment) => String(moment.of(flag)) === '0',
    );
    const where = before && sides[0] !== sides[1] ? (sides[0] ? ' in B' : ' in A') : '';
    return sides.includes(true) ? `not valid${where}: ${flag.key} 0` : '';
}
